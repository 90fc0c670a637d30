# The commands of daily work. Each installs what is missing, configures and builds before it does its job.
SHELL := /bin/bash
PLACE ?= 52.52,13.41
JOBS ?= $(shell nproc)

.PHONY: run desktop test bench format format-check lint analyze asan tsan fuzz build deps clean

deps:
	@tools/install-deps.sh

build/%/build.ninja: CMakeLists.txt CMakePresets.json | deps
	@cmake --preset $* > build-configure.log 2>&1 || { cat build-configure.log; rm -f build-configure.log; exit 1; }
	@rm -f build-configure.log

build: deps build/release/build.ninja
	@cmake --build --preset release -j $(JOBS)

## make run [PLACE=LAT,LON]: the forecast of a place, from the live services or, without network, the demo
run: deps build/release/build.ninja
	@cmake --build --preset release -j $(JOBS) --target nimbara
	@build/release/bin/nimbara forecast --demo-if-offline "$(PLACE)"

## make desktop [ARGS=--demo]: the program in a window
desktop: deps build/release/build.ninja
	@cmake --build --preset release -j $(JOBS) --target nimbara-desktop
	@build/release/bin/nimbara-desktop $(ARGS)

test: build
	@ctest --preset release -j $(JOBS)

bench: build
	@bench/run.sh build/release

format: deps
	@tools/sources.sh | xargs clang-format-19 -i

format-check: deps
	@tools/sources.sh | xargs clang-format-19 --dry-run --Werror

# The analyzer follows paths through the code and takes as long as all other checks together.
lint: TIDY_CHECKS = -checks=-clang-analyzer-*
lint analyze: build
	@tools/check-includes.sh
	@tools/check-pages.sh
	@tools/sources.sh cpp | xargs run-clang-tidy-22 -quiet $(TIDY_CHECKS) -j $(JOBS) -p build/release > build/lint.log 2>&1 \
	  || { grep -E 'warning:|error:' build/lint.log | sort -u; exit 1; }
	@echo "$@: clean"

asan: deps build/asan/build.ninja
	@cmake --build --preset asan -j $(JOBS)
	@ctest --preset asan -j $(JOBS)

tsan: deps build/tsan/build.ninja
	@cmake --build --preset tsan -j $(JOBS)
	@ctest --preset tsan -j $(JOBS)

fuzz: deps build/fuzz/build.ninja
	@cmake --build --preset fuzz -j $(JOBS)
	@fuzz/run.sh build/fuzz

clean:
	@rm -rf build
