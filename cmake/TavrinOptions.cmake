# Compiler settings that every target of the project shares.
add_library(tavrin_options INTERFACE)
target_compile_options(tavrin_options INTERFACE -Wall -Wextra -Wpedantic -Wshadow -Wconversion
    -Wsign-conversion -Wnon-virtual-dtor -Woverloaded-virtual -Wold-style-cast
    $<$<BOOL:${TAVRIN_WERROR}>:-Werror>)
if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU" AND NOT TAVRIN_SANITIZE)
  # Under the sanitizers GCC's flow analysis sees null paths that instrumentation put there.
  target_compile_options(tavrin_options INTERFACE -Wnull-dereference)
endif()
target_compile_definitions(tavrin_options INTERFACE QT_NO_CAST_TO_ASCII QT_NO_CAST_FROM_BYTEARRAY
    QT_NO_URL_CAST_FROM_STRING QT_NO_KEYWORDS QT_NO_FOREACH QT_NO_NARROWING_CONVERSIONS_IN_CONNECT
    QT_DISABLE_DEPRECATED_BEFORE=0x060400
    $<$<CONFIG:Debug>:_GLIBCXX_ASSERTIONS>)
if(TAVRIN_SANITIZE)
  target_compile_options(tavrin_options INTERFACE -fsanitize=${TAVRIN_SANITIZE}
      -fno-sanitize-recover=undefined -fno-omit-frame-pointer)
  target_link_options(tavrin_options INTERFACE -fsanitize=${TAVRIN_SANITIZE})
endif()
if(TAVRIN_FUZZ)
  target_compile_options(tavrin_options INTERFACE -fsanitize=fuzzer-no-link)
endif()
if(TAVRIN_COVERAGE)
  target_compile_options(tavrin_options INTERFACE --coverage)
  target_link_options(tavrin_options INTERFACE --coverage)
endif()
