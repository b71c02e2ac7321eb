# README must show the example program and its output exactly as they are in EXAMPLE_DIR.

cmake_minimum_required(VERSION 3.25)

file(READ "${README}" readme)
foreach(block IN ITEMS "c score_plate.c" "text score_plate.txt")
    separate_arguments(block)
    list(POP_FRONT block language file)
    file(READ "${EXAMPLE_DIR}/${file}" content)
    string(FIND "${readme}" "\n```${language}\n${content}```\n" position)
    if(position EQUAL -1)
        message(FATAL_ERROR "README.md has no ${language} block equal to ${file}")
    endif()
endforeach()
