# make demo           set up, build, render the built-in test picture through every kernel
# make test           set up, build, run every test
# make bench          set up, build, run the benchmarks
# make test-i686      cross-build for 32-bit x86 and run the library's tests under qemu-i386
# make test-aarch64   cross-build for 64-bit Arm and run the library's tests under qemu-aarch64
# make test-sanitize  build and run every test with AddressSanitizer and UndefinedBehaviorSanitizer
# make fuzz           fuzz the tool's YUV4MPEG2 and PNG readers with libFuzzer, FUZZ_SECONDS (600) each
BUILD ?= build
OUT ?= out/demo
JOBS ?= $(shell nproc)

DEBIAN_PACKAGES := cmake ninja-build g++ pkg-config libhwy-dev libpng-dev \
  libcli11-dev libgtest-dev libbenchmark-dev libyuv-dev libswscale-dev

# Cross builds: Debian's cross compiler, the target's multiarch Highway and
# GoogleTest, and qemu-user to run the tests.
CROSS_PACKAGES_i686 := g++-i686-linux-gnu qemu-user libhwy-dev:i386 libgtest-dev:i386
CROSS_PACKAGES_aarch64 := g++-aarch64-linux-gnu qemu-user libhwy-dev:arm64 libgtest-dev:arm64
CROSS_DPKG_ARCH_i686 := i386
CROSS_DPKG_ARCH_aarch64 := arm64
# The library and its tests only: the tool and the benchmarks are built and
# tested on the build machine.
CROSS_OPTIONS := -DYUVBLIT_BENCH=OFF -DYUVBLIT_TOOL=OFF
# GCC's variable tracking over the sanitizers' checks in the heavily inlined
# per-target row files makes each take minutes; without the assignment
# tracking they build in seconds and reports keep their file and line.
SANITIZE_FLAGS := -O1 -g -fno-var-tracking-assignments -fsanitize=address,undefined \
  -fno-sanitize-recover=all -fno-omit-frame-pointer

# Fuzzing: clang's libFuzzer runtime, the build in FUZZ_BUILD, the targets
# fuzz/fuzz_<reader> run from the seeds in fuzz/corpus/<reader>.
FUZZ_PACKAGES := clang libclang-rt-dev
FUZZ_BUILD ?= build-fuzz
FUZZ_SECONDS ?= 600
FUZZ_TARGETS := y4m png

.PHONY: all deps deps-i686 deps-aarch64 deps-fuzz configure build demo test bench clean test-i686 test-aarch64 test-sanitize fuzz

all: build

# Installs Debian packages that are missing (as root): $(1) the packages,
# $(2) a foreign architecture to enable first, if any.
define install_packages
	@missing=$$(for p in $(1); do \
	  dpkg-query -W -f='$${Status}\n' $$p 2>/dev/null | grep -q 'install ok installed' || echo $$p; done); \
	if [ -n "$$missing" ]; then \
	  if [ "$$(id -u)" = 0 ]; then \
	    echo "Installing: $$missing"; \
	    if [ -n "$(2)" ]; then dpkg --add-architecture $(2); fi; \
	    apt-get update -qq || echo "apt-get update reported errors; installing from the lists it has"; \
	    DEBIAN_FRONTEND=noninteractive apt-get install -y -qq $$missing; \
	  else \
	    echo "Missing Debian packages: $$missing (run as root, or: sudo apt-get install $$missing)"; exit 1; \
	  fi; \
	fi
endef

# The Debian packages the build needs.
deps:
	$(call install_packages,$(DEBIAN_PACKAGES))

deps-i686 deps-aarch64: deps-%: deps
	$(call install_packages,$(CROSS_PACKAGES_$*),$(CROSS_DPKG_ARCH_$*))

$(BUILD)/build.ninja: | deps
	cmake -S . -B $(BUILD) -G Ninja -DCMAKE_BUILD_TYPE=Release

configure: $(BUILD)/build.ninja

build: configure
	cmake --build $(BUILD) -j $(JOBS)

demo: build
	$(BUILD)/tools/yuvblit/yuvblit demo --out $(OUT)
	@echo "Open $(OUT)/index.html to see every kernel's output side by side."

test: build
	cd $(BUILD) && ctest --output-on-failure -j $(JOBS)

bench: build
	$(BUILD)/bench/yuvblit_bench --benchmark_counters_tabular=true

# Cross builds run every library test on every Highway target the platform
# builds (SVE and SVE2 under qemu's emulated CPU on aarch64).
test-i686 test-aarch64: test-%: deps-%
	cmake -S . -B build-$* -G Ninja -DCMAKE_BUILD_TYPE=Release \
	  -DCMAKE_TOOLCHAIN_FILE=cmake/toolchain-$*.cmake $(CROSS_OPTIONS)
	cmake --build build-$* -j $(JOBS)
	cd build-$* && ctest --output-on-failure -j $(JOBS)

test-sanitize: deps
	cmake -S . -B build-sanitize -G Ninja -DCMAKE_BUILD_TYPE=Debug \
	  -DCMAKE_C_FLAGS="$(SANITIZE_FLAGS)" -DCMAKE_CXX_FLAGS="$(SANITIZE_FLAGS)" \
	  -DCMAKE_EXE_LINKER_FLAGS="$(SANITIZE_FLAGS)" -DCMAKE_SHARED_LINKER_FLAGS="$(SANITIZE_FLAGS)" \
	  -DYUVBLIT_BENCH=OFF
	cmake --build build-sanitize -j $(JOBS)
	cd build-sanitize && ASAN_OPTIONS=halt_on_error=1 UBSAN_OPTIONS=halt_on_error=1:print_stacktrace=1 \
	  ctest --output-on-failure -j $(JOBS)

deps-fuzz: deps
	$(call install_packages,$(FUZZ_PACKAGES))

# Each target runs for FUZZ_SECONDS and prints its executions and coverage;
# a finding stops with its reproducer in $(FUZZ_BUILD)/findings/.
fuzz: deps-fuzz
	cmake -S . -B $(FUZZ_BUILD) -G Ninja -DCMAKE_BUILD_TYPE=RelWithDebInfo \
	  -DCMAKE_C_COMPILER=clang -DCMAKE_CXX_COMPILER=clang++ \
	  -DYUVBLIT_FUZZ=ON -DYUVBLIT_TESTS=OFF -DYUVBLIT_BENCH=OFF
	cmake --build $(FUZZ_BUILD) -j $(JOBS) --target $(addprefix fuzz_,$(FUZZ_TARGETS))
	@for t in $(FUZZ_TARGETS); do fuzz/run.sh $(FUZZ_BUILD) $$t $(FUZZ_SECONDS) || exit 1; done

clean:
	rm -rf $(BUILD) build-i686 build-aarch64 build-sanitize out
