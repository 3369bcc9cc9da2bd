# tavrin_module(name SOURCES … DEPENDS …): one folder of src/ as a library, tavrin::name.
# A module sees only what it names: its own sources and the modules it DEPENDS on. Which modules it
# may name is the layer graph of docs/architecture.md; tests/layers checks it on the includes.
function(tavrin_module name)
  cmake_parse_arguments(PARSE_ARGV 1 arg "" "" "SOURCES;DEPENDS;PRIVATE_DEPENDS")
  if(arg_SOURCES)
    add_library(tavrin_${name} STATIC ${arg_SOURCES})
    target_include_directories(tavrin_${name} PUBLIC ${PROJECT_SOURCE_DIR}/src)
    target_link_libraries(tavrin_${name} PUBLIC ${arg_DEPENDS} PRIVATE tavrin_options ${arg_PRIVATE_DEPENDS})
    target_compile_definitions(tavrin_${name} PRIVATE QT_NO_CAST_FROM_ASCII)
    tavrin_precompile(tavrin_${name})
  else()
    add_library(tavrin_${name} INTERFACE)
    target_include_directories(tavrin_${name} INTERFACE ${PROJECT_SOURCE_DIR}/src)
    target_link_libraries(tavrin_${name} INTERFACE ${arg_DEPENDS})
  endif()
  add_library(tavrin::${name} ALIAS tavrin_${name})
endfunction()

# tavrin_test(name SOURCES … DEPENDS … [PROPERTIES LABELS label …]): the tests of one folder as one
# program, tavrin_<name>_tests; each test is one entry of ctest. The label says where they run, and
# its words select: "unit" (the default: anywhere, without a screen), "unit-threads" (also under the
# thread sanitizer), "desktop" (needs scripts/virtual-desktop), "desktop-pipewire" (on one with
# PulseAudio and on one with PipeWire). Building the target tests-<word> builds what a word selects.
function(tavrin_test name)
  cmake_parse_arguments(PARSE_ARGV 1 arg "" "" "SOURCES;DEPENDS;PROPERTIES")
  set(target tavrin_${name}_tests)
  add_executable(${target} ${arg_SOURCES})
  target_include_directories(${target} PRIVATE ${PROJECT_SOURCE_DIR}/tests)
  target_link_libraries(${target} PRIVATE ${arg_DEPENDS} tavrin::test_support tavrin_options
      GTest::gmock GTest::gtest_main)
  tavrin_precompile(${target})
  cmake_parse_arguments(property "" "LABELS" "" ${arg_PROPERTIES})
  if(NOT property_LABELS)
    set(property_LABELS unit)
  endif()
  if(property_LABELS MATCHES "desktop")
    # Over the offscreen platform of the presets: these are here for the real one.
    list(APPEND property_UNPARSED_ARGUMENTS ENVIRONMENT QT_QPA_PLATFORM=xcb)
  endif()
  # Without the values: those of parameters that are addresses would differ from run to run.
  gtest_discover_tests(${target} DISCOVERY_TIMEOUT 60 NO_PRETTY_VALUES
      PROPERTIES LABELS ${property_LABELS} ${property_UNPARSED_ARGUMENTS})
  string(REPLACE "-" ";" words ${property_LABELS})
  foreach(word IN LISTS words)
    if(NOT TARGET tests-${word})
      add_custom_target(tests-${word})
    endif()
    add_dependencies(tests-${word} ${target})
  endforeach()
endfunction()

function(tavrin_precompile target)
  if(TAVRIN_PCH)
    target_precompile_headers(${target} PRIVATE <QString> <QVariant> <QVariantList> <QVariantMap>
        <QJsonObject> <QHash> <functional> <memory> <optional> <vector> <algorithm> <chrono>)
    # With the time in it, no compilation after it would ever be found in the compiler's cache.
    target_compile_options(${target} PRIVATE "$<$<CXX_COMPILER_ID:Clang>:SHELL:-Xclang -fno-pch-timestamp>")
  endif()
endfunction()
