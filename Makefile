# The two commands of README: "make demo" and "make test". The rest is for those who work on the project.
PRESET ?= release
BUILD = build/$(PRESET)
JOBS ?= $(shell nproc)
DEMO_DIR ?= out/demo

.PHONY: demo test bench build format clean

# Installs what is missing, builds the program, draws the demonstration sheet and says where the pictures are.
demo:
	scripts/install-packages build
	@mkdir -p build
	@cmake --preset release -DZM_BUILD_TESTS=OFF -B build/demo >build/demo.log 2>&1 || (cat build/demo.log; exit 1)
	cmake --build build/demo -j $(JOBS)
	build/demo/bin/zenro demo $(DEMO_DIR) --overwrite

# Installs what is missing, builds everything, runs all tests and says which were skipped.
test: build
	ctest --test-dir $(BUILD) --output-on-failure --no-tests=error -j $(JOBS) --output-junit tests.xml
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

format:
	git ls-files '*.cpp' '*.h' | xargs clang-format-14 -i

clean:
	rm -rf build out
