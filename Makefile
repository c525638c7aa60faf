# Entry points; see README.md. Everything builds with CMake and Ninja.
BUILD ?= build
JOBS ?= $(shell nproc)

.PHONY: deps build run test bench asan fuzz clean

deps:
	bash scripts/install-deps

build:
	cmake -S . -B $(BUILD) -G Ninja -DCMAKE_BUILD_TYPE=RelWithDebInfo
	cmake --build $(BUILD) -j $(JOBS)

# The main job: the loads of a sample site (DIN 1055, snow zone 2, wind
# zone 2, 300 m, a 10 m building with a 35 degree gabled roof). Builds only
# the tool and its data, not the tests, benchmarks or the Python module.
run:
	cmake -S . -B $(BUILD) -G Ninja -DCMAKE_BUILD_TYPE=RelWithDebInfo
	cmake --build $(BUILD) -j $(JOBS) --target qvroofload_cli qvrl_data
	$(BUILD)/cli/qvroofload site --norm 3 --snow-zone 2 --wind-zone 2 --category 2 \
	  --altitude 300 --height 10 --roof gabled --pitch 35

test: build
	ctest --test-dir $(BUILD) --output-on-failure -j $(JOBS)

bench: build
	$(BUILD)/bench/qvrl_bench

# The tests again under AddressSanitizer and UndefinedBehaviorSanitizer.
asan:
	cmake -S . -B build-asan -G Ninja -DCMAKE_BUILD_TYPE=Debug -DQVRL_SANITIZE=ON -DQVRL_BENCH=OFF
	cmake --build build-asan -j $(JOBS)
	ctest --test-dir build-asan --output-on-failure -j $(JOBS)

# Every fuzz target for FUZZ_SECONDS seconds on its own.
FUZZ_SECONDS ?= 60
fuzz:
	CC=clang CXX=clang++ cmake -S . -B build-fuzz -G Ninja -DCMAKE_BUILD_TYPE=RelWithDebInfo \
	  -DQVRL_FUZZ=ON -DQVRL_SANITIZE=ON -DQVRL_TESTS=OFF -DQVRL_BENCH=OFF -DQVRL_PYTHON=OFF
	cmake --build build-fuzz -j $(JOBS)
	bash scripts/run-fuzz build-fuzz/fuzz $(FUZZ_SECONDS)

clean:
	rm -rf $(BUILD) build-asan build-fuzz
