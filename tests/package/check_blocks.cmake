# A DOCUMENT must show files as they are: BLOCKS is a list of language=file, each of which has to be
# a code block of that language in the document.

cmake_minimum_required(VERSION 3.25)

file(READ "${DOCUMENT}" document)
foreach(block IN LISTS BLOCKS)
    string(REGEX MATCH "^([^=]+)=(.+)$" block "${block}")
    set(language "${CMAKE_MATCH_1}")
    set(file "${CMAKE_MATCH_2}")
    file(READ "${file}" content)
    string(FIND "${document}" "\n```${language}\n${content}```\n" position)
    if(position EQUAL -1)
        message(FATAL_ERROR "${DOCUMENT} has no ${language} block equal to ${file}")
    endif()
endforeach()
