# Front door of the project: `make run` and `make test` install what the
# build needs, configure, build, and run.
BUILD     ?= build
SAN_BUILD ?= build-sanitize
TSAN_BUILD ?= build-tsan
JOBS      ?= $(shell nproc 2>/dev/null || echo 2)
CMAKE_FLAGS ?=

.PHONY: all deps configure build run test sanitize tsan format check-format clean

all: build

deps:
	bash scripts/install-deps.sh

$(BUILD)/CMakeCache.txt:
	cmake -S . -B $(BUILD) $(CMAKE_FLAGS)

configure: deps $(BUILD)/CMakeCache.txt

build: configure
	cmake --build $(BUILD) -j $(JOBS)

# The main job: load the embedded data directory and print its catalog.
run: build
	$(BUILD)/tools/boardtool/boardtool catalog

test: build
	cd $(BUILD) && ctest --output-on-failure -j $(JOBS)

sanitize: deps
	cmake -S . -B $(SAN_BUILD) -DBOARDLIB_SANITIZE=ON -DCMAKE_BUILD_TYPE=Debug $(CMAKE_FLAGS)
	cmake --build $(SAN_BUILD) -j $(JOBS)
	cd $(SAN_BUILD) && ASAN_OPTIONS=detect_leaks=1 UBSAN_OPTIONS=print_stacktrace=1 ctest --output-on-failure -j $(JOBS)

# The tests that start threads carry the ctest label "threads".
tsan: deps
	cmake -S . -B $(TSAN_BUILD) -DBOARDLIB_TSAN=ON -DCMAKE_BUILD_TYPE=Debug $(CMAKE_FLAGS)
	cmake --build $(TSAN_BUILD) -j $(JOBS)
	cd $(TSAN_BUILD) && TSAN_OPTIONS="halt_on_error=1 suppressions=$(CURDIR)/tests/repo/tsan-suppressions.txt" \
	  ctest --output-on-failure -j $(JOBS) -L threads

# The C++ style of .clang-format: check it, or apply it to every source.
check-format: deps
	bash scripts/check-format.sh

format: deps
	bash scripts/check-format.sh --fix

clean:
	rm -rf $(BUILD) $(SAN_BUILD) $(TSAN_BUILD)
