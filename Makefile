# The front door. The build itself is CMake (presets in CMakePresets.json) with Ninja, in build/.

EXAMPLE ?= build/examples/planets.orvek
DURATION ?= 10 yr

.DEFAULT_GOAL := help
.PHONY: help run test bench examples check clean packages

help:
	@echo "make run        build, then integrate an example and show the summary"
	@echo "                (EXAMPLE=$(EXAMPLE) DURATION='$(DURATION)')"
	@echo "make test       build everything and run the tests"
	@echo "make bench      build, then print the table of measurements"
	@echo "make examples   build the documents of Examples/ into build/examples/"
	@echo "make check      all of .ci/run: tests, style checks, sanitizers"
	@echo "make clean      remove build/"
	@echo "What is missing on a Debian machine is installed first (Tools/packages.txt)."

run: build/build.ninja
	ninja -C build orvek-run examples
	build/bin/orvek-run --for "$(DURATION)" "$(EXAMPLE)"

test: build/build.ninja
	ninja -C build
	ctest --preset release --no-tests=error

bench: build/build.ninja
	ninja -C build orvek-bench orvek-run
	build/bin/orvek-bench

examples: build/build.ninja
	ninja -C build examples

check:
	.ci/run

clean:
	rm -rf build

# Ninja runs CMake again by itself when something of the build's description changes.
build/build.ninja: CMakePresets.json | packages
	cmake --preset release

packages:
	@Tools/install-packages.sh build
