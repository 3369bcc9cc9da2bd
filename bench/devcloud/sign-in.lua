package.path = "bench/devcloud/?.lua;" .. package.path
require("report")

wrk.method = "POST"
wrk.path = "/v1/auth/login"
wrk.headers["Content-Type"] = "application/json"
wrk.body = os.getenv("LOGIN")
