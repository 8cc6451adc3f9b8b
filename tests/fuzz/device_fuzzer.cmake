# The fuzzer of all parsers with Qt: one program of one source, for reading Qt's headers is most of what compiling each
# would take. By hand, with what was found kept in a folder:
#
#     build/release/stage/lib/picture_stand/fuzz_device profile -max_total_time=60 NEW_CORPUS_FOLDER \
#         build/release/tests/fuzz/device_seeds/profile

set(parsers configuration control_connection device_record language_table locale_alias profile request_line theme)
set(root ${PROJECT_SOURCE_DIR})
set(sources
    ${root}/device/core/configuration.cpp
    ${root}/device/core/language_table.cpp
    ${root}/device/core/paths.cpp
    ${root}/device/core/placeholders.cpp
    ${root}/device/core/profile.cpp
    ${root}/device/core/theme.cpp
    ${root}/device/core/visible_text.cpp
    ${root}/device/pixels/level_curve.cpp
    ${root}/device/platform/device_record.cpp
    ${root}/device/remote/control_connection.cpp
    ${root}/device/remote/control_server.cpp
    ${root}/device/remote/listening_socket.cpp
    ${root}/device/remote/request_line.cpp
    ${root}/picture_stand/src/locale_alias.cpp)
foreach(name control_connection control_server)
    set(moc ${CMAKE_CURRENT_BINARY_DIR}/moc_${name}.cpp)
    qt_generate_moc(${root}/device/remote/${name}.h ${moc})
    list(APPEND sources ${moc})
endforeach()
foreach(parser device ${parsers})
    list(APPEND sources ${CMAKE_CURRENT_SOURCE_DIR}/fuzz_${parser}.cpp)
endforeach()
list(TRANSFORM sources REPLACE "(.+)" "#include \"\\1\"\n" OUTPUT_VARIABLE includes)
list(JOIN includes "" includes)
file(CONFIGURE OUTPUT fuzz_device.cpp CONTENT "${includes}")

set(folders ${CMAKE_CURRENT_SOURCE_DIR} ${root}/picture_stand/src)
list(APPEND folders ${root}/device/core ${root}/device/pixels ${root}/device/platform ${root}/device/remote)
foreach(module Core Network)
    get_target_property(more Qt6::${module} INTERFACE_INCLUDE_DIRECTORIES)
    list(APPEND folders ${more})
endforeach()
list(FILTER folders EXCLUDE REGEX "mkspecs")
list(TRANSFORM folders PREPEND -I)
set(fuzzer ${CMAKE_LIBRARY_OUTPUT_DIRECTORY}/fuzz_device)
add_custom_command(OUTPUT ${fuzzer} VERBATIM
    DEPENDS ${sources} fuzz_targets.h require.h
    COMMAND ${SLATE_CLANG} -std=c++20 -O1 -g1 -fPIC -fsanitize=fuzzer,address,undefined
        -fno-sanitize-recover=all ${folders} ${CMAKE_CURRENT_BINARY_DIR}/fuzz_device.cpp -o ${fuzzer}
        $<TARGET_FILE:Qt6::Core> $<TARGET_FILE:Qt6::Network>)

add_executable(make_device_seeds make_device_seeds.cpp)
target_link_libraries(make_device_seeds PRIVATE slate_warnings)
set(seeds ${CMAKE_CURRENT_BINARY_DIR}/device_seeds)
set(tables ${SLATE_STAGE}/${SLATE_DATA_DIR}/languages/de.qm ${SLATE_STAGE}/${SLATE_DATA_DIR}/languages/pl.qm)
add_custom_command(OUTPUT ${seeds}/theme/0 VERBATIM
    DEPENDS make_device_seeds ${tables}
    COMMAND make_device_seeds ${seeds} ${tables})
add_custom_target(device_fuzzer ALL DEPENDS ${fuzzer} ${seeds}/theme/0)

foreach(parser IN LISTS parsers)
    set(options -malloc_limit_mb=16 -max_len=8192)
    if(parser MATCHES "request_line|control_connection")
        list(APPEND options -dict=${CMAKE_CURRENT_SOURCE_DIR}/request_line.dict)
    endif()
    slate_fuzz_test(fuzz_${parser} ${fuzzer} ${parser} ${options} ${seeds}/${parser})
endforeach()
