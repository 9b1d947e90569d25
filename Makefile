# The front door. The build itself is CMake (presets in CMakePresets.json) with Ninja, in build/.

EXAMPLE ?= build/examples/planets.orvek
DURATION ?= 10 yr
PREFIX ?= /usr/local
SECONDS ?= 60

.DEFAULT_GOAL := help
.PHONY: help run test bench accuracy examples check fuzz sanitize tidy screenshots install uninstall package clean packages

help:
	@echo "make run        build, then open an example; without a display server integrate and draw it"
	@echo "                (EXAMPLE=$(EXAMPLE) DURATION='$(DURATION)')"
	@echo "make test       build everything and run the tests"
	@echo "make bench      build, then print the table of measurements"
	@echo "make accuracy   build, then make the figures of Documentation/Accuracy.md anew (half a minute)"
	@echo "make examples   build the documents of Examples/ into build/examples/"
	@echo "make check      all of .ci/run: tests, style checks, sanitizers"
	@echo "make sanitize   all tests under the sanitizers of addresses, undefined behaviour and threads"
	@echo "make fuzz       look for inputs that the program cannot take (SECONDS=$(SECONDS) for each kind)"
	@echo "make tidy       build, then clang-tidy over every source, tests and analyzer included"
	@echo "make screenshots  build, then make the pictures of the guide anew (two minutes)"
	@echo "make install    build, then install below PREFIX=$(PREFIX), with DESTDIR before it"
	@echo "make uninstall  remove what the last make install has installed"
	@echo "make package    build a Debian package in build/"
	@echo "make clean      remove build/"
	@echo "What is missing on a Debian machine is installed first (Tools/packages.txt)."

run: build/build.ninja
	ninja -C build orvek orvek-run examples
	@if Tools/has-display.sh; then \
	    build/bin/orvek "$(EXAMPLE)"; \
	else \
	    echo "There is no display server: orvek-run runs $(EXAMPLE) for $(DURATION) and draws it."; \
	    build/bin/orvek-run --for "$(DURATION)" --png build/demo.png "$(EXAMPLE)" && \
	        echo "The picture is build/demo.png"; \
	fi

test: build/build.ninja
	ninja -C build
	ctest --preset release --no-tests=error

bench: build/build.ninja
	ninja -C build orvek-bench orvek-run
	build/bin/orvek-bench

accuracy: build/build.ninja
	ninja -C build orvek-bench orvek-run
	build/bin/orvek-bench accuracy

examples: build/build.ninja
	ninja -C build examples

check:
	.ci/run

sanitize:
	@Tools/install-packages.sh build sanitize
	Tools/run-sanitized.sh asan
	Tools/run-sanitized.sh tsan

fuzz:
	@Tools/install-packages.sh build sanitize
	cmake --preset asan
	ninja -C build-asan fuzz
	Tools/run-fuzz.sh $(SECONDS)

tidy: build/build.ninja
	@Tools/install-packages.sh checks
	ninja -C build
	Tools/run-tidy.sh

screenshots: build/build.ninja
	@Tools/install-packages.sh guide
	ninja -C build orvek examples
	Tools/make-screenshots.sh

install: build/build.ninja
	ninja -C build installable
	DESTDIR="$(DESTDIR)" cmake --install build --prefix "$(PREFIX)"
	Packaging/refresh-desktop.sh "$(DESTDIR)" "$(PREFIX)"

# The list of CMake has neither DESTDIR nor a last line's end.
uninstall:
	xargs -r -d '\n' -I{} rm -f "$(DESTDIR){}" < build/install_manifest.txt
	Packaging/refresh-desktop.sh "$(DESTDIR)" "$(PREFIX)"

package: build/build.ninja
	@Tools/install-packages.sh package
	ninja -C build installable
	cd build && cpack

clean:
	rm -rf build

# Ninja runs CMake again by itself when something of the build's description changes.
build/build.ninja: CMakePresets.json | packages
	cmake --preset release

packages:
	@Tools/install-packages.sh build
