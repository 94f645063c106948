# One option a sanitizer; linked through torv_warnings so that no target can forget it.
if(TORV_SANITIZER STREQUAL "address")
    target_compile_options(torv_warnings INTERFACE
        -fsanitize=address,undefined -fno-sanitize-recover=all -fno-omit-frame-pointer)
    target_link_options(torv_warnings INTERFACE -fsanitize=address,undefined)
elseif(TORV_SANITIZER STREQUAL "thread")
    target_compile_options(torv_warnings INTERFACE -fsanitize=thread -fno-omit-frame-pointer)
    target_link_options(torv_warnings INTERFACE -fsanitize=thread)
elseif(NOT TORV_SANITIZER STREQUAL "")
    message(FATAL_ERROR "TORV_SANITIZER must be empty, 'address' or 'thread', not '${TORV_SANITIZER}'")
endif()

# What tests need in their environment. Suppressions are for other people's libraries only; each line in the files has its reason.
set(TORV_TEST_ENVIRONMENT)
if(TORV_SANITIZER STREQUAL "address")
    set(TORV_TEST_ENVIRONMENT
        "LSAN_OPTIONS=suppressions=${PROJECT_SOURCE_DIR}/cmake/lsan.supp:print_suppressions=0"
        "UBSAN_OPTIONS=print_stacktrace=1")
elseif(TORV_SANITIZER STREQUAL "thread")
    set(TORV_TEST_ENVIRONMENT
        "TSAN_OPTIONS=suppressions=${PROJECT_SOURCE_DIR}/cmake/tsan.supp:ignore_noninstrumented_modules=1:halt_on_error=0")
endif()
