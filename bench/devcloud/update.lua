-- A request that wants no account and no work: what answering costs by itself.
package.path = "bench/devcloud/?.lua;" .. package.path
require("report")

wrk.method = "GET"
wrk.path = "/v1/client/update"
