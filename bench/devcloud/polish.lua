package.path = "bench/devcloud/?.lua;" .. package.path
require("report")

wrk.method = "POST"
wrk.path = "/v1/text/polish"
wrk.headers["Content-Type"] = "application/json"
wrk.headers["Authorization"] = "Bearer " .. os.getenv("TOKEN")
wrk.body = '{"transcript":"嗯，那个，我我觉得这个方案可以但是需要再看看Python的预算 然后明天开会讨论",'
  .. '"application":{},"style":"professional","translation":"none"}'
