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

# tavrin_test(name SOURCES … DEPENDS … [PROPERTIES …]): the unit tests of one folder as one program,
# tavrin_<name>_tests; each test is one entry of ctest. The label "unit" is what sanitizer runs select.
function(tavrin_test name)
  cmake_parse_arguments(PARSE_ARGV 1 arg "" "" "SOURCES;DEPENDS;PROPERTIES")
  set(target tavrin_${name}_tests)
  add_executable(${target} ${arg_SOURCES})
  target_include_directories(${target} PRIVATE ${PROJECT_SOURCE_DIR}/tests)
  target_link_libraries(${target} PRIVATE ${arg_DEPENDS} tavrin::test_support tavrin_options
      GTest::gmock GTest::gtest_main)
  tavrin_precompile(${target})
  if(NOT arg_PROPERTIES)
    set(arg_PROPERTIES LABELS unit)
  endif()
  if("desktop" IN_LIST arg_PROPERTIES)
    # Over the offscreen platform of the presets: these are here for the real one.
    list(APPEND arg_PROPERTIES ENVIRONMENT QT_QPA_PLATFORM=xcb)
  endif()
  gtest_discover_tests(${target} DISCOVERY_TIMEOUT 60 PROPERTIES ${arg_PROPERTIES})
endfunction()

function(tavrin_precompile target)
  if(TAVRIN_PCH)
    target_precompile_headers(${target} PRIVATE <QString> <QVariant> <QVariantList> <QVariantMap>
        <QJsonObject> <QHash> <functional> <memory> <optional> <vector> <algorithm> <chrono>)
  endif()
endfunction()
