# The options of cmake/TavrinDeployment.cmake: what they accept, what they refuse and how they say it.

# run(name result_variable arguments…): `cmake arguments…`; what it printed is left in ${output}, on
# one line, since CMake wraps its messages.
function(run result)
  execute_process(COMMAND ${CMAKE_COMMAND} ${ARGN} WORKING_DIRECTORY ${SOURCE}
    RESULT_VARIABLE code OUTPUT_VARIABLE printed ERROR_VARIABLE printed)
  string(REGEX REPLACE "[ \n]+" " " printed "${printed}")
  set(output "${printed}" PARENT_SCOPE)
  set(${result} ${code} PARENT_SCOPE)
endfunction()

function(expect_refused message)
  run(code ${ARGN})
  string(FIND "${output}" "${message}" found)
  if(code EQUAL 0 OR found EQUAL -1)
    message(SEND_ERROR "expected the refusal \"${message}\" of: ${ARGN}\ngot ${code}: ${output}")
  endif()
endfunction()

function(expect_accepted)
  run(code ${ARGN})
  if(NOT code EQUAL 0)
    message(SEND_ERROR "expected acceptance of: ${ARGN}\ngot ${code}: ${output}")
  endif()
endfunction()

set(check -P ${SOURCE}/cmake/TavrinDeployment.cmake)
set(release -DTAVRIN_CLOUD_URL=https://cloud.your.domain -DTAVRIN_WEB_DOMAIN=your.domain
    -DTAVRIN_PROVIDER_URL=https://models.your.domain/v1)

# The release preset cannot be built as it stands, and says what to do.
expect_refused("TAVRIN_CLOUD_URL still holds its placeholder \"https://cloud.tavrin.invalid\""
  --preset release -B ${SCRATCH})
expect_refused("cmake --preset release -DTAVRIN_CLOUD_URL=https://cloud.your.domain"
  --preset release -B ${SCRATCH})
expect_refused("TAVRIN_WEB_DOMAIN still holds its placeholder"
  --preset release -B ${SCRATCH} -DTAVRIN_CLOUD_URL=https://cloud.your.domain)
expect_refused("TAVRIN_PROVIDER_URL still holds its placeholder"
  ${release} -DTAVRIN_PROVIDER_URL=https://models.tavrin.invalid/v1 ${check})
expect_refused("TAVRIN_CLOUD_URL still holds its placeholder" ${release} -DTAVRIN_CLOUD_URL= ${check})
expect_accepted(${release} ${check})

# A development build needs nothing.
expect_accepted(${check})

foreach(url https://cloud.your.domain/ https://cloud.your.domain:8443 http://127.0.0.1:8787
    http://localhost:8787 http://localhost)
  expect_accepted(${release} -DTAVRIN_CLOUD_URL=${url} ${check})
endforeach()
foreach(url http://cloud.your.domain ftp://localhost cloud.your.domain https://cloud.your.domain/api
    HTTPS://cloud.your.domain https://Cloud.your.domain https://user@cloud.your.domain http://localhost.evil.test
    http://127.0.0.1.evil.test https://bad_host https://a..b https://)
  expect_refused("TAVRIN_CLOUD_URL is \"${url}\": it must be https:// and a host in lower case"
    ${release} -DTAVRIN_CLOUD_URL=${url} ${check})
endforeach()

foreach(domain https://your.domain your.domain/ .your.domain Your.domain)
  expect_refused("TAVRIN_WEB_DOMAIN is \"${domain}\": it must be a bare host name"
    ${release} -DTAVRIN_WEB_DOMAIN=${domain} ${check})
endforeach()

foreach(url https://models.your.domain https://models.your.domain/v1/ http://models.your.domain/v1 models/v1)
  expect_refused("TAVRIN_PROVIDER_URL is \"${url}\": it must be an https:// URL whose path ends in /v1"
    ${release} -DTAVRIN_PROVIDER_URL=${url} ${check})
endforeach()
expect_accepted(${release} -DTAVRIN_PROVIDER_URL=https://models.your.domain/openai/v1 ${check})
