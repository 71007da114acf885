# qovelmor_folder(NAME [SOURCES file...] [LINK target...] [PRIVATE_LINK target...])
#
# One folder of the source tree as one static library `qovelmor_NAME`. Headers are included as
# "folder/Header.h". A target given under LINK may be used by the folder's headers too.
function(qovelmor_folder name)
    cmake_parse_arguments(ARG "" "" "SOURCES;LINK;PRIVATE_LINK" ${ARGN})
    if(ARG_SOURCES)
        add_library(qovelmor_${name} STATIC ${ARG_SOURCES})
        target_include_directories(qovelmor_${name} PUBLIC "${PROJECT_SOURCE_DIR}")
        target_link_libraries(qovelmor_${name}
            PUBLIC ${ARG_LINK}
            PRIVATE qovelmor_options ${ARG_PRIVATE_LINK})
    else()
        add_library(qovelmor_${name} INTERFACE)
        target_include_directories(qovelmor_${name} INTERFACE "${PROJECT_SOURCE_DIR}")
        target_link_libraries(qovelmor_${name} INTERFACE ${ARG_LINK} ${ARG_PRIVATE_LINK})
    endif()
endfunction()

# qovelmor_test(FOLDER NAME [SERIAL] [XVFB] [LINK target...] [LABELS label...] [TIMEOUT seconds])
#
# The test program NAME.cpp of the current folder. It links only what it names: that line proves
# the layering. Tests run without a display and are labelled with their folder.
# XVFB: on an X server of its own with a window manager, because the test is about what they do (drags).
# SERIAL: no other test runs beside it, because a far end with a clock of its own answers in real time.
# A test labelled `threads` exercises the thread-rich core and runs under ThreadSanitizer too. The
# system's Qt is not built for that: what goes on inside its libraries (the watchdog of Qt Test among
# them) cannot be judged and is left out; our own code is judged whole.
add_custom_target(thread_tests)
function(qovelmor_test folder name)
    cmake_parse_arguments(ARG "SERIAL;XVFB" "TIMEOUT" "LINK;LABELS;SOURCES" ${ARGN})
    if(NOT ARG_TIMEOUT)
        set(ARG_TIMEOUT 180) # what takes seconds here may take minutes under a sanitizer
    endif()
    add_executable(${name} ${name}.cpp ${ARG_SOURCES})
    set_target_properties(${name} PROPERTIES
        AUTOMOC ON
        RUNTIME_OUTPUT_DIRECTORY "${CMAKE_BINARY_DIR}/tests")
    target_link_libraries(${name} PRIVATE qovelmor_options ${ARG_LINK} Qt6::Test)
    if(ARG_XVFB)
        add_test(NAME ${name}
            COMMAND "${PROJECT_SOURCE_DIR}/tests/support/under_xvfb.sh" "$<TARGET_FILE:${name}>")
    else()
        add_test(NAME ${name} COMMAND ${name})
    endif()
    set_tests_properties(${name} PROPERTIES RUN_SERIAL "${ARG_SERIAL}")
    if("threads" IN_LIST ARG_LABELS)
        add_dependencies(thread_tests ${name})
    endif()
    set_tests_properties(${name} PROPERTIES
        LABELS "${folder};${ARG_LABELS}"
        TIMEOUT ${ARG_TIMEOUT}
        ENVIRONMENT "QT_QPA_PLATFORM=offscreen;QTEST_FUNCTION_TIMEOUT=900000;LC_ALL=C.UTF-8;TSAN_OPTIONS=ignore_noninstrumented_modules=1;QOVELMOR_BUILD_DIR=${CMAKE_BINARY_DIR};QOVELMOR_SOURCE_DIR=${PROJECT_SOURCE_DIR}")
endfunction()
