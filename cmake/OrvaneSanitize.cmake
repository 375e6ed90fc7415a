# -DORVANE_SANITIZE=address,undefined (or thread) builds everything, the tests included, with the
# named sanitizers. A finding fails the test that triggered it: UBSan does not recover, ASan and
# TSan stop at the first report, and LeakSanitizer reports leaks at exit with a failing status.

set(ORVANE_SANITIZE "" CACHE STRING
  "Sanitizers to build with, comma-separated: address, undefined, leak, thread")

set(ORVANE_SANITIZER_TEST_ENVIRONMENT "")
if(ORVANE_SANITIZE)
  string(REPLACE "," ";" sanitizers "${ORVANE_SANITIZE}")
  foreach(sanitizer IN LISTS sanitizers)
    if(NOT sanitizer MATCHES "^(address|undefined|leak|thread)$")
      message(FATAL_ERROR "ORVANE_SANITIZE: unknown sanitizer '${sanitizer}'; "
        "use address, undefined, leak or thread, e.g. -DORVANE_SANITIZE=address,undefined")
    endif()
  endforeach()
  if("thread" IN_LIST sanitizers AND ("address" IN_LIST sanitizers OR "leak" IN_LIST sanitizers))
    message(FATAL_ERROR "ORVANE_SANITIZE: thread cannot be combined with address or leak; "
      "make one build with address,undefined and another with thread")
  endif()

  string(REPLACE ";" "," flag "${sanitizers}")
  # -O1 and line tables (-g1) are what the reports need, and cost about 40% less compile time
  # than -O2 -g; being last on the command line, they win over the build type's flags.
  add_compile_options(-fsanitize=${flag} -fno-omit-frame-pointer -O1 -g1)
  add_link_options(-fsanitize=${flag})
  if("undefined" IN_LIST sanitizers)
    add_compile_options(-fno-sanitize-recover=undefined)
  endif()

  # What the tests run with (orvane_test and the tests that start the programs add these to
  # their environment). Third-party leaks are suppressed in tests/sanitizers/lsan.supp; the
  # program's own never are. Qt and GLib come without TSan instrumentation, so TSan cannot see
  # the locks inside them and would take their own hand-overs between their threads (posted
  # events, the network thread's buffers) for races: ignore_noninstrumented_modules leaves out
  # the memory accesses that uninstrumented code makes, and every access of Orvane's own code
  # is still checked.
  set(suppressions ${PROJECT_SOURCE_DIR}/tests/sanitizers)
  list(APPEND ORVANE_SANITIZER_TEST_ENVIRONMENT
    "ASAN_OPTIONS=detect_leaks=1:check_initialization_order=1:strict_init_order=1:detect_stack_use_after_return=1:halt_on_error=1"
    "LSAN_OPTIONS=suppressions=${suppressions}/lsan.supp:print_suppressions=0"
    "UBSAN_OPTIONS=print_stacktrace=1:halt_on_error=1"
    "TSAN_OPTIONS=halt_on_error=1:second_deadlock_stack=1:ignore_noninstrumented_modules=1")
endif()
