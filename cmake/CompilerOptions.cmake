# One interface target carries every switch that our own code is built with.
add_library(qovelmor_options INTERFACE)
target_compile_features(qovelmor_options INTERFACE cxx_std_20)
set(CMAKE_CXX_EXTENSIONS OFF)

target_compile_options(qovelmor_options INTERFACE
    -Wall -Wextra -Wpedantic -Wshadow -Wconversion -Wnon-virtual-dtor)
if(QOVELMOR_WERROR)
    target_compile_options(qovelmor_options INTERFACE -Werror)
endif()

target_compile_definitions(qovelmor_options INTERFACE
    QT_NO_KEYWORDS
    QT_NO_CAST_FROM_ASCII
    QT_NO_CAST_TO_ASCII
    QT_NO_URL_CAST_FROM_STRING
    QT_NO_NARROWING_CONVERSIONS_IN_CONNECT
    QT_NO_FOREACH
    QT_DISABLE_DEPRECATED_BEFORE=0x060400)

if(QOVELMOR_SANITIZE)
    target_compile_options(qovelmor_options INTERFACE
        -fsanitize=${QOVELMOR_SANITIZE} -fno-sanitize-recover=all -fno-omit-frame-pointer)
    target_link_options(qovelmor_options INTERFACE -fsanitize=${QOVELMOR_SANITIZE})
    # With the checks inserted, GCC takes many temporaries for uninitialized; the release build warns.
    target_compile_options(qovelmor_options INTERFACE
        $<$<CXX_COMPILER_ID:GNU>:-Wno-maybe-uninitialized>)
endif()

# Programs stand at the top of the build tree, where the scripts and the tests find them.
set(CMAKE_RUNTIME_OUTPUT_DIRECTORY "${CMAKE_BINARY_DIR}")
