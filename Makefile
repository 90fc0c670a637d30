# The commands of daily work. Each installs what is missing, configures and builds before it does its job.
SHELL := /bin/bash
PLACE ?= 52.52,13.41
JOBS ?= $(shell nproc)
install = @tools/install-deps.sh
configure = @tools/configure.sh
compile = @cmake --build --preset

.PHONY: run desktop build test debug bench format format-check lint analyze asan tsan fuzz fuzz-build deb deb-test tarball
.PHONY: screenshots clean

## make run [PLACE=LAT,LON]: the forecast of a place, from the live services or, without network, the demo
run:
	$(install) run
	$(configure) release
	$(compile) release -j $(JOBS) --target nimbara
	@build/release/bin/nimbara forecast --demo-if-offline "$(PLACE)"

## make desktop [ARGS=--demo]: the program in a window
desktop:
	$(install) desktop
	$(configure) release desktop
	$(compile) release -j $(JOBS) --target nimbara-desktop
	@build/release/bin/nimbara-desktop $(ARGS)

build:
	$(install) test
	$(configure) release desktop tests
	$(compile) release -j $(JOBS)

test: build
	@ctest --preset release -j $(JOBS)

## make debug: the same programs for the debugger, in build/debug
debug:
	$(install) test
	$(configure) debug desktop tests
	$(compile) debug -j $(JOBS)

bench:
	$(install) bench
	$(configure) release desktop tests bench
	$(compile) release -j $(JOBS)
	@bench/run.sh build/release

format:
	$(install) lint
	@tools/sources.sh | xargs clang-format-19 -i

format-check:
	$(install) lint
	@tools/sources.sh | xargs clang-format-19 --dry-run --Werror

# The analyzer follows paths through the code and takes as long as all other checks together.
lint: TIDY_CHECKS = -checks=-clang-analyzer-*
lint analyze: build
	$(install) lint
	@tools/check-includes.sh
	@tools/check-pages.sh build/release
	@tools/sources.sh cpp | tools/tidy.py build/release -quiet $(TIDY_CHECKS) -j $(JOBS) > build/lint.log 2>&1 \
	  || { grep -E 'warning:|error:' build/lint.log | sort -u; exit 1; }
	@echo "$@: clean"

asan tsan:
	$(install) test
	$(configure) $@ desktop tests
	$(compile) $@ -j $(JOBS)
	@ctest --preset $@ -j $(JOBS)

fuzz-build:
	$(install) fuzz
	$(configure) fuzz desktop tests
	$(compile) fuzz -j $(JOBS) --target fuzz_targets

fuzz: fuzz-build
	@fuzz/run.sh build/fuzz

## make deb: Debian packages in build/deb; make deb-test installs them in a fresh root, upgrades and removes them
deb:
	$(install) desktop deb
	@nice tools/make_deb.sh
	@lintian --fail-on error,warning build/deb/*.changes

deb-test:
	$(install) deb
	@tools/deb_test.sh build/deb

## make tarball: an archive in build/ that runs from any folder
tarball:
	$(install) desktop
	$(configure) release desktop
	$(compile) release -j $(JOBS)
	@tools/make_tarball.sh build/release

## make screenshots: the pictures that software centres show, in build/screenshots
screenshots:
	$(install) desktop
	$(configure) release desktop
	$(compile) release -j $(JOBS) --target nimbara-desktop
	@tools/screenshots.sh build/release build/screenshots

clean:
	@rm -rf build
