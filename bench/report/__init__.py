"""The report of the benchmarks: the table, results.json and the plots. Python's standard library only."""
