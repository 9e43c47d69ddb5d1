# Front door of the project: `make run` and `make test` install what the
# build needs, configure, build, and run.
BUILD     ?= build
SAN_BUILD ?= build-sanitize
TSAN_BUILD ?= build-tsan
FUZZ_BUILD ?= build-fuzz
FUZZ_SECONDS ?= 60
JOBS      ?= $(shell nproc 2>/dev/null || echo 2)
CMAKE_FLAGS ?=

.PHONY: all deps configure build install run test sanitize tsan fuzz fuzz-smoke format check-format clean

all: build

# SKIP_DEPS=1 builds with what the machine has, without asking the package
# manager.
SKIP_DEPS ?=
deps:
ifeq ($(SKIP_DEPS),)
	bash scripts/install-deps.sh
endif

$(BUILD)/CMakeCache.txt:
	cmake -S . -B $(BUILD) $(CMAKE_FLAGS)

configure: deps $(BUILD)/CMakeCache.txt

build: configure
	cmake --build $(BUILD) -j $(JOBS)

# Installs into PREFIX (default /usr/local): boardtool, the libraries and
# headers, the CMake and pkg-config packages, the Tcl and Python modules and
# the data installation.
PREFIX ?= /usr/local
install: build
	cmake --install $(BUILD) --prefix $(PREFIX)

# The main job: load the embedded data directory and print its catalog.
run: build
	$(BUILD)/tools/boardtool/boardtool catalog

test: build
	cd $(BUILD) && ctest --output-on-failure -j $(JOBS)

sanitize: deps
	cmake -S . -B $(SAN_BUILD) -DBOARDLIB_SANITIZE=ON -DCMAKE_BUILD_TYPE=Debug $(CMAKE_FLAGS)
	cmake --build $(SAN_BUILD) -j $(JOBS)
	cd $(SAN_BUILD) && ASAN_OPTIONS=detect_leaks=1 UBSAN_OPTIONS=print_stacktrace=1 ctest --output-on-failure -j $(JOBS)

# The tests that start threads carry the ctest label "threads"; they run with
# 2 load workers, and the repository's own tests again with 1 and with 8.
TSAN_ENV = TSAN_OPTIONS="halt_on_error=1 suppressions=$(CURDIR)/tests/repo/tsan-suppressions.txt"
tsan: deps
	cmake -S . -B $(TSAN_BUILD) -DBOARDLIB_TSAN=ON -DCMAKE_BUILD_TYPE=Debug $(CMAKE_FLAGS)
	cmake --build $(TSAN_BUILD) -j $(JOBS)
	cd $(TSAN_BUILD) && $(TSAN_ENV) BOARDLIB_PARAMS="general.maxThreads=2" \
	  ctest --output-on-failure -j $(JOBS) -L threads
	for workers in 1 8; do \
	  (cd $(TSAN_BUILD) && $(TSAN_ENV) BOARDLIB_PARAMS="general.maxThreads=$$workers" \
	    ctest --output-on-failure -j $(JOBS) -L repository) || exit 1; \
	done

# The fuzz targets as libFuzzer programs (clang, with AddressSanitizer and
# UndefinedBehaviorSanitizer), and a short run of each.
fuzz: deps
	cmake -S . -B $(FUZZ_BUILD) -DBOARDLIB_FUZZ=ON -DBOARDLIB_TESTS=OFF \
	  -DCMAKE_CXX_COMPILER=clang++ $(CMAKE_FLAGS)
	cmake --build $(FUZZ_BUILD) -j $(JOBS) --target fuzz_targets

fuzz-smoke: fuzz
	bash tests/fuzz/run.sh --build $(FUZZ_BUILD) --seconds $(FUZZ_SECONDS)

# The C++ style of .clang-format: check it, or apply it to every source.
check-format: deps
	bash scripts/check-format.sh

format: deps
	bash scripts/check-format.sh --fix

clean:
	rm -rf $(BUILD) $(SAN_BUILD) $(TSAN_BUILD) $(FUZZ_BUILD)
