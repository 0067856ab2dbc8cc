# SPDX-License-Identifier: MIT
# The front door. Every goal starts from a Debian machine with nothing but git, make and a compiler.

BUILD := build
BUNDLE := $(BUILD)/Sayloft.app
PACKAGES := packaging/debian-packages
SOURCES = $(shell git ls-files '*.cpp' '*.h')

.PHONY: build run test bench format lint clean build-packages all-packages configure everything

build: configure
	cmake --build $(BUILD) --target bundle

run: build
	scripts/run.sh $(BUNDLE)

test: all-packages everything
	ctest --test-dir $(BUILD) --output-on-failure --parallel 2 --no-tests=error

bench: all-packages everything
	scripts/bench.sh $(BUILD)

format: all-packages
	clang-format -i $(SOURCES)

lint: all-packages everything
	clang-format --dry-run --Werror $(SOURCES)
	scripts/lint.sh $(BUILD)

clean:
	rm -rf build build-debug build-asan build-tsan

everything: configure
	cmake --build $(BUILD)

configure: build-packages
	@test -e $(BUILD)/build.ninja || cmake --preset release

build-packages:
	@scripts/install-packages.sh $(PACKAGES)-build.txt

all-packages:
	@scripts/install-packages.sh $(PACKAGES)-build.txt $(PACKAGES)-desktop.txt $(PACKAGES)-test.txt
