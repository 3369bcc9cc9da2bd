# What a deployment fixes when the program is built; src/cloud/Deployment.h.in carries it into the
# code. A value under ".invalid" is a placeholder, which no build may keep.
set(TAVRIN_CLOUD_URL "http://127.0.0.1:8787" CACHE STRING
    "Base URL of the cloud service: HTTPS, scheme and host only (plain HTTP to this machine for development)")
set(TAVRIN_WEB_DOMAIN "tavrin.example" CACHE STRING
    "The product's own web domain: downloads of updates are accepted from it alone")
set(TAVRIN_PROVIDER_URL "https://models.tavrin.example/v1" CACHE STRING
    "Default provider base URL, an HTTPS URL whose path ends in /v1; it only labels usage reports")

function(tavrin_check_deployment)
  set(label "[a-z0-9]([a-z0-9-]*[a-z0-9])?")
  set(host "${label}([.]${label})*")
  foreach(option TAVRIN_CLOUD_URL TAVRIN_WEB_DOMAIN TAVRIN_PROVIDER_URL)
    if("${${option}}" MATCHES "[.]invalid(:[0-9]+)?(/|$)" OR "${${option}}" STREQUAL "")
      message(FATAL_ERROR "${option} still holds its placeholder \"${${option}}\". A release is built for one "
          "deployment; set it, for example\n"
          "  cmake --preset release -DTAVRIN_CLOUD_URL=https://cloud.your.domain "
          "-DTAVRIN_WEB_DOMAIN=your.domain -DTAVRIN_PROVIDER_URL=https://models.your.domain/v1")
    endif()
  endforeach()
  if(NOT TAVRIN_CLOUD_URL MATCHES "^https://${host}(:[0-9]+)?/?$"
      AND NOT TAVRIN_CLOUD_URL MATCHES "^http://(127[.]0[.]0[.]1|localhost)(:[0-9]+)?/?$")
    message(FATAL_ERROR "TAVRIN_CLOUD_URL is \"${TAVRIN_CLOUD_URL}\": it must be https:// and a host in lower "
        "case, without a path; plain http:// is for 127.0.0.1 and localhost only.")
  endif()
  if(NOT TAVRIN_WEB_DOMAIN MATCHES "^${host}$")
    message(FATAL_ERROR "TAVRIN_WEB_DOMAIN is \"${TAVRIN_WEB_DOMAIN}\": it must be a bare host name in lower case.")
  endif()
  if(NOT TAVRIN_PROVIDER_URL MATCHES "^https://${host}(:[0-9]+)?(/[^?#]*)?/v1$")
    message(FATAL_ERROR "TAVRIN_PROVIDER_URL is \"${TAVRIN_PROVIDER_URL}\": it must be an https:// URL whose path "
        "ends in /v1.")
  endif()
endfunction()

tavrin_check_deployment()
