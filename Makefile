# The front door. Every target sets up what it needs on Debian 12 (as root or with sudo) and builds what is out of date.
# The times that it tells were measured on two cores; "the first time" is with packages to install and Qt for Windows
# to build.

.DEFAULT_GOAL := help
.PHONY: help run preview screenshots test test-native bench windows package format format-check lint icons catalogue translations clean

help:
	@echo "make run          build the shell and start it under Wine, with a stand-in server (SERVER=none: without one;"
	@echo "                  LANGUAGE=en: in English; HEADLESS=1: no display, take a screenshot)"
	@echo "make preview      open a page of the shell natively: PAGE=launcher; without PAGE: list them"
	@echo "make screenshots  a picture of every page in every state: build/screenshots (LANGUAGE=es: in Spanish)"
	@echo "make test         every test: native with sanitizers, for Windows under Wine, whole stories"
	@echo "make test-native  the native tests only: the quick loop"
	@echo "make bench        what things cost, beside the bare calls"
	@echo "make windows      the product, as a folder: build/windows/dist"
	@echo "make package      an installer and a zip of it: build/package"
	@echo "make format       lay the sources out;  make lint: look for mistakes"
	@echo "make icons        render the pictures anew from their SVG sources"
	@echo "make catalogue    write the built-in catalogue anew from its tables"
	@echo "make translations bring the Spanish translation up to the texts of the sources"
	@echo "make clean        remove build/"

run:
	@echo "make run: building the shell and starting it under Wine (1 minute from scratch; 15 minutes the first time)"
	@tools/setup build windows wine
	@tools/build native twserver
	@tools/build windows dist asuser logwait listwindows stacking standins
	@SERVER=$(SERVER) LANGUAGE=$(LANGUAGE) tools/run

preview:
	@echo "make preview: building for Linux (1 minute from scratch; 2 the first time)"
	@tools/setup build preview
	@tools/build native preview
	@LANGUAGE=$(LANGUAGE) tools/preview $(PAGE)

screenshots:
	@echo "make screenshots: building for Linux and taking pictures (3 minutes from scratch; 4 the first time)"
	@tools/setup build preview
	@tools/build native preview
	@LANGUAGE=$(LANGUAGE) tools/preview --screenshots

test:
	@echo "make test: building for Linux and Windows and running every test (3 minutes from scratch; 17 the first time)"
	@tools/setup build windows wine package
	@tools/build native
	@tools/build windows
	@printf 'subdirs(native windows)\n' >build/CTestTestfile.cmake
	@ctest --test-dir build --output-on-failure -j 2

test-native:
	@echo "make test-native: building for Linux with sanitizers and testing (2 minutes from scratch; 4 the first time)"
	@tools/setup build
	@tools/build native
	@ctest --test-dir build/native --output-on-failure -j 2 -L unit

bench:
	@echo "make bench: building for measuring and measuring (6 minutes from scratch; 20 the first time)"
	@tools/setup build windows wine
	@tools/build bench benches
	@tools/build windows dist benches standins
	@tools/bench

windows:
	@echo "make windows: building the product (1 minute from scratch; 15 the first time)"
	@tools/setup build windows
	@tools/build windows dist
	@echo "The product: build/windows/dist ($$(du -sh build/windows/dist | cut -f1))"

package:
	@echo "make package: building the product and packing it (2 minutes from scratch; 16 the first time)"
	@tools/setup build windows package
	@tools/build windows dist
	@tools/package build/package
	@ls -l build/package

format:
	@echo "make format: laying out the sources (seconds)"
	@tools/setup format
	@tools/format

format-check:
	@echo "make format-check: comparing the sources with their layout (seconds)"
	@tools/setup format
	@tools/format --check

lint:
	@echo "make lint: clang-tidy over src/ and tests/ (5 minutes)"
	@tools/setup build lint
	@tools/build native
	@tools/lint

icons:
	@echo "make icons: rendering the pictures (seconds)"
	@tools/setup icons
	@tools/render-icons

catalogue:
	@echo "make catalogue: writing the built-in catalogue (seconds)"
	@tools/setup catalogue
	@tools/make-catalogue

translations:
	@echo "make translations: looking for the texts of the sources (seconds)"
	@tools/setup build
	@tools/translations

clean:
	@echo "make clean: removing build/ (seconds)"
	@rm -rf build
