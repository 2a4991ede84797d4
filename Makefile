# The front door. Every target sets up what it needs on Debian 12 (as root or with sudo) and builds what is out of date.
# The times are for two cores, with packages installed and Qt for Windows in its cache; without them, a first run
# takes about 20 minutes more.

.DEFAULT_GOAL := help
.PHONY: help run test test-native windows format format-check lint icons clean

help:
	@echo "make run          build the shell and start it under Wine (HEADLESS=1: take a screenshot instead)"
	@echo "make test         every test: native with sanitizers, for Windows under Wine, whole stories"
	@echo "make test-native  the native tests only: the quick loop"
	@echo "make windows      the product, as a folder: build/windows/dist"
	@echo "make format       lay the sources out;  make lint: look for mistakes"
	@echo "make icons        render the pictures anew from their SVG sources"
	@echo "make clean        remove build/"

run:
	@echo "make run: building the shell (1 minute from scratch) and starting it under Wine (15 seconds)"
	@tools/setup build windows wine
	@tools/build windows dist asuser logwait
	@tools/run

test:
	@echo "make test: building for Linux and Windows (3 minutes from scratch) and running every test (1 minute)"
	@tools/setup build windows wine
	@tools/build native
	@tools/build windows
	@printf 'subdirs(native windows)\n' >build/CTestTestfile.cmake
	@ctest --test-dir build --output-on-failure -j 2

test-native:
	@echo "make test-native: building for Linux with sanitizers (2 minutes from scratch) and testing (10 seconds)"
	@tools/setup build
	@tools/build native
	@ctest --test-dir build/native --output-on-failure -j 2 -L unit

windows:
	@echo "make windows: building the product (1 minute from scratch)"
	@tools/setup build windows
	@tools/build windows dist
	@echo "The product: build/windows/dist ($$(du -sh build/windows/dist | cut -f1))"

format:
	@echo "make format: laying out the sources (seconds)"
	@tools/setup format
	@git ls-files '*.cpp' '*.h' | xargs clang-format -i

format-check:
	@echo "make format-check: comparing the sources with their layout (seconds)"
	@tools/setup format
	@git ls-files '*.cpp' '*.h' | xargs clang-format --dry-run --Werror

lint:
	@echo "make lint: clang-tidy over src/ and tests/ (5 minutes)"
	@tools/setup build lint
	@tools/build native
	@tools/lint

icons:
	@echo "make icons: rendering the pictures (seconds)"
	@tools/setup icons
	@tools/render-icons

clean:
	@rm -rf build
