# Qt's core headers, parsed once for every target: reading them is most of what compiling one of our files costs. Each
# file still includes what it uses; clang-tidy reads them without this.

# Programs are compiled as libraries are, so that both can share them; on x86-64 older versions of Qt see to that.
if(NOT CMAKE_SYSTEM_PROCESSOR STREQUAL "x86_64" OR Qt6_VERSION VERSION_GREATER_EQUAL 6.8)
    set(CMAKE_CXX_COMPILE_OPTIONS_PIE -fPIC)
endif()

add_library(slate_core_headers OBJECT ${CMAKE_CURRENT_LIST_DIR}/precompiled.cpp)
set_target_properties(slate_core_headers PROPERTIES AUTOMOC OFF)
target_link_libraries(slate_core_headers PRIVATE Qt6::Core slate_warnings)
set(slate_precompiled_headers
    <algorithm> <array> <atomic> <chrono> <cmath> <cstdint> <cstdio> <cstring> <functional> <memory> <optional> <string>
    <utility> <vector>
    <QByteArray> <QCoreApplication> <QDateTime> <QDir> <QElapsedTimer> <QFile> <QFileInfo> <QHash> <QJsonArray>
    <QJsonDocument> <QJsonObject> <QList> <QMap> <QObject> <QPointer> <QProcess> <QRect> <QRegularExpression> <QSet>
    <QString> <QStringList> <QTemporaryDir> <QThread> <QTimer> <QUrl> <QVariant>)
target_precompile_headers(slate_core_headers PRIVATE ${slate_precompiled_headers})

# slate_precompiled(TARGETS...): targets that link Qt6::Core and slate_warnings.
function(slate_precompiled)
    foreach(target IN LISTS ARGN)
        target_precompile_headers(${target} REUSE_FROM slate_core_headers)
    endforeach()
endfunction()

# slate_precompiled_test(TARGET): a test program, which reads Qt's test and picture headers too. Qt gives every folder of
# tests definitions of its own, so each has its own headers.
function(slate_precompiled_test target)
    cmake_path(GET CMAKE_CURRENT_SOURCE_DIR FILENAME folder)
    set(headers slate_${folder}_test_headers)
    if(NOT TARGET ${headers})
        add_library(${headers} OBJECT ${PROJECT_SOURCE_DIR}/cmake/precompiled.cpp)
        set_target_properties(${headers} PROPERTIES AUTOMOC OFF)
        target_link_libraries(${headers} PRIVATE Qt6::Gui Qt6::Network Qt6::Test slate_warnings)
        target_precompile_headers(${headers} PRIVATE ${slate_precompiled_headers}
            <QGuiApplication> <QImage> <QSignalSpy> <QTest>)
    endif()
    target_link_libraries(${target} PRIVATE Qt6::Gui Qt6::Network)
    target_precompile_headers(${target} REUSE_FROM ${headers})
    # An empty file, as a rule: a test's .moc is included by the test itself.
    set_source_files_properties(${CMAKE_CURRENT_BINARY_DIR}/${target}_autogen/mocs_compilation.cpp
        PROPERTIES SKIP_PRECOMPILE_HEADERS ON)
endfunction()
