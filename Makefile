# SPDX-License-Identifier: MIT
# The front door. Every goal starts from a Debian machine with nothing but git, make and a compiler.

BUILD := build
BUNDLE := $(BUILD)/Sayloft.app
PACKAGES := packaging/debian-packages
SOURCES = $(shell git ls-files '*.cpp' '*.h')

# Of each fuzzer.
FUZZ_SECONDS := 20

.PHONY: build run test endurance check check-asan check-tsan check-fuzz bench format lint clean \
    build-packages all-packages fuzz-packages configure everything

build: configure
	cmake --build $(BUILD) --target bundle

run: build
	scripts/run.sh $(BUNDLE)

# Most tests wait most of the time.
test: all-packages everything
	ctest --test-dir $(BUILD) --output-on-failure --parallel 5 --no-tests=error --label-exclude long

# Half an hour of holding, a thousand dictations and the like: three quarters of an hour.
endurance: all-packages everything
	ctest --test-dir $(BUILD) --verbose --no-tests=error --label-regex long

# Everything: two hours and a half. A goal after another, since most of them wait for time to pass.
check:
	$(MAKE) test
	$(MAKE) lint
	$(MAKE) check-asan
	$(MAKE) check-tsan
	$(MAKE) check-fuzz
	$(MAKE) endurance

# All but the long runs under AddressSanitizer, LeakSanitizer and UndefinedBehaviorSanitizer: 25 minutes
# on two cores.
check-asan: all-packages
	@test -e build-asan/build.ninja || cmake --preset asan
	cmake --build --preset asan
	scripts/sanitized-tests.sh build-asan --label-exclude long

# The parts with threads under ThreadSanitizer, and with an event loop of Qt's own: nobody sees the
# locks of GLib's. Ten minutes.
check-tsan: all-packages
	@test -e build-tsan/build.ninja || cmake --preset tsan
	cmake --build --preset tsan
	QT_NO_GLIB=1 scripts/sanitized-tests.sh build-tsan --label-regex threads

# Made-up inputs for everything that comes from outside; see fuzz/.
check-fuzz: fuzz-packages
	@test -e build-fuzz/build.ninja || cmake --preset fuzz
	cmake --build --preset fuzz
	scripts/fuzz.sh build-fuzz $(FUZZ_SECONDS)

bench: all-packages everything
	scripts/bench.sh $(BUILD)

format: all-packages
	clang-format -i $(SOURCES)

lint: all-packages everything
	clang-format --dry-run --Werror $(SOURCES)
	scripts/lint.sh $(BUILD)
	scripts/check-reliability.py $(BUILD)

clean:
	rm -rf build build-debug build-asan build-tsan build-fuzz

everything: configure
	cmake --build $(BUILD)

configure: build-packages
	@test -e $(BUILD)/build.ninja || cmake --preset release

build-packages:
	@scripts/install-packages.sh $(PACKAGES)-build.txt

all-packages:
	@scripts/install-packages.sh $(PACKAGES)-build.txt $(PACKAGES)-desktop.txt $(PACKAGES)-test.txt

fuzz-packages:
	@scripts/install-packages.sh $(PACKAGES)-build.txt $(PACKAGES)-fuzz.txt
