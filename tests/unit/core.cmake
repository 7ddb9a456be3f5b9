# Tests: unit/core.
