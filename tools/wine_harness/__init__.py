"""Drives the real program under Wine from outside: windows, sound, material. Used by the end-to-end tests, bench and docs;
tests/wine/README.md has the overview."""
