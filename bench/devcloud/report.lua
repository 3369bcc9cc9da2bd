-- The one line that a measurement prints.
function done(summary, latency)
  local failures = summary.errors.status + summary.errors.connect + summary.errors.read
    + summary.errors.write + summary.errors.timeout
  io.write(string.format("%.0f requests/s, p50 %.2f ms, p99 %.2f ms, %d failures\n",
    summary.requests / (summary.duration / 1e6), latency:percentile(50) / 1e3,
    latency:percentile(99) / 1e3, failures))
end
