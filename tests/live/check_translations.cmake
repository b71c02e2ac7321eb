# Fails if a text of the window has no translation. SOURCE is the directory of the window, LUPDATE
# the tool that collects its texts, COPY the file that it may change.
configure_file(${SOURCE}/translations/voxam_live_de.ts ${COPY} COPYONLY)
execute_process(
    COMMAND ${LUPDATE} -silent -locations none -no-obsolete ${SOURCE} -ts ${COPY}
    COMMAND_ERROR_IS_FATAL ANY)
file(READ ${COPY} texts)
string(REGEX MATCHALL "<source>[^<]*</source>[ \n]*<translation type=\"unfinished\"" missing "${texts}")
if(missing)
    string(REGEX REPLACE "</source>[^;]*" "" missing "${missing}")
    string(REPLACE "<source>" "\n    " missing "${missing}")
    message(FATAL_ERROR "These texts have no German translation: ${missing}\n"
        "Build the target voxam_live_translations and fill in "
        "hosts/live/translations/voxam_live_de.ts.")
endif()
