# What the compiler is told: warnings, widths of types, sanitizers.

add_library(slate_warnings INTERFACE)
target_compile_options(slate_warnings INTERFACE
    -Wall -Wextra -Wpedantic -Wshadow -Wnon-virtual-dtor -Woverloaded-virtual -Wcast-align -Wformat=2)
if(CMAKE_SIZEOF_VOID_P EQUAL 4)
    # Files above 2 GiB, dates after 2038. Qt has 32-bit times and 64-bit offsets within; neither type is in its interfaces.
    add_compile_definitions(_FILE_OFFSET_BITS=64 _TIME_BITS=64)
endif()
if(CMAKE_SYSTEM_PROCESSOR MATCHES "^(arm|aarch64)" AND CMAKE_SIZEOF_VOID_P EQUAL 4)
    # Sizes and signs that a larger machine hides.
    target_compile_options(slate_warnings INTERFACE -Wconversion -Wsign-conversion)
    if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
        # Highway's headers name half floats; for all, so that they can share precompiled headers.
        add_compile_options(-mfp16-format=ieee)
    endif()
endif()
if(SLATE_WARNINGS_AS_ERRORS)
    target_compile_options(slate_warnings INTERFACE -Werror)
endif()
target_compile_definitions(slate_warnings INTERFACE
    QT_NO_CAST_FROM_ASCII QT_NO_CAST_TO_ASCII QT_NO_URL_CAST_FROM_STRING
    QT_STRICT_ITERATORS QT_DISABLE_DEPRECATED_BEFORE=0x060400)

if(SLATE_SANITIZER STREQUAL "address")
    # Lines for the reports, and no more: variables would double the time that compiling takes.
    add_compile_options(-fsanitize=address,undefined -fno-sanitize-recover=all -fno-omit-frame-pointer -O1 -g1)
    add_link_options(-fsanitize=address,undefined)
elseif(SLATE_SANITIZER STREQUAL "thread")
    # Qt's generated code uses atomic_thread_fence, of which GCC warns that the sanitizer does not see it.
    add_compile_options(-fsanitize=thread -fno-omit-frame-pointer -O1 -Wno-tsan)
    add_link_options(-fsanitize=thread)
endif()
if(SLATE_FUZZ)
    add_compile_options(-fsanitize=fuzzer-no-link,address,undefined -fno-sanitize-recover=all
        -fno-omit-frame-pointer -O1)
    add_link_options(-fsanitize=address,undefined)
endif()
if(NOT SLATE_SANITIZER AND NOT SLATE_FUZZ)
    add_link_options(-Wl,--no-undefined)
endif()
