#!/usr/bin/env bash
# Runs the sample kiosk program. It arrives with the frame (window, device and main loop).
echo "The sample kiosk program comes with the frame; for now, scripts/test.sh shows the library at work."
