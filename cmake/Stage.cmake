# The build tree has the installed shape, so that what is tested is what is installed: every program, library and
# data file is made at its place below stage/.

set(SLATE_STAGE ${CMAKE_BINARY_DIR}/stage)
set(SLATE_BIN_DIR bin)                        # commands for people
set(SLATE_LIB_DIR lib/picture_stand)          # the program, the device's libraries and plug-ins, test programs
set(SLATE_DATA_DIR share/picture_stand)       # theme, languages, profiles, skeleton

set(CMAKE_LIBRARY_OUTPUT_DIRECTORY ${SLATE_STAGE}/${SLATE_LIB_DIR})
set(CMAKE_RUNTIME_OUTPUT_DIRECTORY ${SLATE_STAGE}/${SLATE_LIB_DIR})

# Programs and libraries find each other by their place relative to one another, in both trees.
set(CMAKE_BUILD_WITH_INSTALL_RPATH ON)
set(CMAKE_INSTALL_RPATH "$ORIGIN")

# slate_command(TARGET): a command for people, in bin/.
function(slate_command target)
    set_target_properties(${target} PROPERTIES RUNTIME_OUTPUT_DIRECTORY ${SLATE_STAGE}/${SLATE_BIN_DIR})
    target_compile_definitions(${target} PRIVATE SLATE_VERSION="${PROJECT_VERSION}")
    install(TARGETS ${target} RUNTIME DESTINATION ${SLATE_BIN_DIR} COMPONENT tools)
endfunction()

# slate_library(TARGET): a shared library or program beside the application.
function(slate_library target)
    install(TARGETS ${target}
        RUNTIME DESTINATION ${SLATE_LIB_DIR} COMPONENT runtime
        LIBRARY DESTINATION ${SLATE_LIB_DIR} COMPONENT runtime)
endfunction()

# slate_public_library(TARGET): one that applications link, or that those need; in the package for CMake.
function(slate_public_library target)
    install(TARGETS ${target} EXPORT picture_stand LIBRARY DESTINATION ${SLATE_LIB_DIR} COMPONENT runtime)
endfunction()

# slate_data(TARGET FOLDER FILES...): data files below share/picture_stand/FOLDER, copied when they change.
# Relative names are taken from the current source folder, generated files are named absolutely.
function(slate_data target folder)
    set(copies)
    foreach(file IN LISTS ARGN)
        cmake_path(ABSOLUTE_PATH file BASE_DIRECTORY ${CMAKE_CURRENT_SOURCE_DIR})
        cmake_path(GET file FILENAME name)
        set(copy ${SLATE_STAGE}/${SLATE_DATA_DIR}/${folder}/${name})
        add_custom_command(OUTPUT ${copy} DEPENDS ${file} VERBATIM
            COMMAND ${CMAKE_COMMAND} -E copy ${file} ${copy})
        list(APPEND copies ${copy})
        install(FILES ${file} DESTINATION ${SLATE_DATA_DIR}/${folder} COMPONENT runtime)
    endforeach()
    add_custom_target(${target} ALL DEPENDS ${copies})
endfunction()
