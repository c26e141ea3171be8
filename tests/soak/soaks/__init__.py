"""One module for each soak: BUILDS, {preset: targets}, and run(quick), which gives (numbers, faults)."""
