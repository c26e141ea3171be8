"""Helpers of the end-to-end tests; tests/wine/README.md has the overview."""
