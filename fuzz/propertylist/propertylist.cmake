# Fuzzers of the property-list readers and writers.
