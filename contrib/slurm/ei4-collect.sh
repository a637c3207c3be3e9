#!/bin/bash
# Runs when all elements of the array have ended: ei4-collect.sh EI4_BATCH JOB
exec "$1" failures "$2" --ended
