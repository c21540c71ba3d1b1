# The two commands of README: "make demo" and "make test". The rest is for those who work on the project.
PRESET ?= release
BUILD = build/$(PRESET)
JOBS ?= $(shell nproc)
DEMO_DIR ?= out/demo

PREFIX ?= /usr/local

.PHONY: demo test bench windows build install package docs format clean

# Installs what is missing, builds the program, draws the demonstration sheet and says where the pictures are.
demo:
	scripts/install-packages build
	@mkdir -p build
	@cmake --preset release -DZM_BUILD_TESTS=OFF -DZM_BUILD_PYTHON=OFF -B build/demo >build/demo.log 2>&1 || (cat build/demo.log; exit 1)
	cmake --build build/demo -j $(JOBS)
	build/demo/bin/zenro demo $(DEMO_DIR) --overwrite

# Installs what is missing, builds everything, runs all tests and says which were skipped.
test: build
	ctest --test-dir $(BUILD) --output-on-failure --no-tests=error -j $(JOBS) --output-junit tests.xml || \
	  { scripts/show-failed $(BUILD)/tests.xml; exit 1; }
	@scripts/check-skips $(BUILD)/tests.xml

build:
	scripts/install-packages build test $(if $(filter dev,$(PRESET)),bench)
	cmake --preset $(PRESET)
	cmake --build --preset $(PRESET) -j $(JOBS)

# Every benchmark with its peers and limits, as ratios.
bench:
	scripts/install-packages build test bench
	cmake --preset dev
	cmake --build --preset dev -j $(JOBS)
	scripts/bench build/dev

# Everything for 64-bit Windows in one zip: the library, its import library, headers, CMake package, zenro.exe, data.
windows:
	scripts/install-packages windows
	scripts/package-windows build/windows-package $(JOBS)

# The program, the library and what belongs to them, in PREFIX; DESTDIR is put before it.
install: build
	cmake --install $(BUILD) --prefix $(PREFIX)

# Debian packages, in build/package/packages.
package:
	scripts/install-packages build package
	cmake --preset release -DZM_BUILD_TESTS=OFF -B build/package
	cmake --build build/package -j $(JOBS)
	cd build/package && cpack -G DEB

# The reference from the public headers, in build/docs/html/index.html. A warning of Doxygen is an error.
docs:
	scripts/install-packages docs
	scripts/make-docs build/docs

format:
	git ls-files '*.cpp' '*.h' | xargs clang-format-14 -i

clean:
	rm -rf build out
