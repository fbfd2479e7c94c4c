# make demo           set up, build, render the built-in test picture through every kernel
# make test           set up, build, run every test
# make bench          set up, build, run the benchmarks
# make test-i686      cross-build for 32-bit x86 and run the library's tests under qemu-i386
# make test-aarch64   cross-build for 64-bit Arm and run the library's tests under qemu-aarch64
# make test-sanitize  build and run every test with AddressSanitizer and UndefinedBehaviorSanitizer
# make windows        cross-build the library as 32- and 64-bit Windows DLLs and check their exports
# make test-windows   run the DLLs under wine and compare every kernel's output with the Linux library's
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
# Windows DLLs: Debian's MinGW-w64 cross compilers, each building Debian's
# Highway source package (static) into its build folder, then the library
# against it. Tested under wine; 32-bit wine is a 32-bit Linux program,
# unpacked into the 32-bit build folder and run under qemu-i386 where the
# kernel cannot execute it.
WINDOWS_ARCHS := x86_64 i686
WINDOWS_PACKAGES := g++-mingw-w64-i686 g++-mingw-w64-x86-64 wine wine64 dpkg-dev \
  qemu-user libc6:i386
WINDOWS_DEB_SRC := /etc/apt/sources.list.d/yuvblit-deb-src.sources
WINDOWS_SOURCES := build-windows-sources
WINDOWS_OPTIONS := -DYUVBLIT_TESTS=OFF -DYUVBLIT_BENCH=OFF -DYUVBLIT_TOOL=OFF
WINDOWS_HWY_OPTIONS := -DBUILD_SHARED_LIBS=OFF -DBUILD_TESTING=OFF -DHWY_ENABLE_TESTS=OFF \
  -DHWY_ENABLE_EXAMPLES=OFF -DHWY_ENABLE_CONTRIB=OFF
WINE32 := build-windows-i686/wine32
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

.PHONY: all deps deps-i686 deps-aarch64 deps-fuzz configure build demo test bench clean test-i686 test-aarch64 test-sanitize fuzz \
  deps-windows windows $(addprefix windows-,$(WINDOWS_ARCHS)) test-windows

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

# The cross compilers, wine, and a deb-src entry for Highway's source
# package (the release's own suites, beside the system's binary entries).
deps-windows: deps
	$(call install_packages,$(WINDOWS_PACKAGES),i386)
	@[ -f $(WINDOWS_DEB_SRC) ] || { \
	  [ "$$(id -u)" = 0 ] || { echo "Highway's source package needs deb-src entries: run as root to add $(WINDOWS_DEB_SRC)"; exit 1; }; \
	  codename=$$(. /etc/os-release && echo $$VERSION_CODENAME); \
	  printf '%s\n' "# Source packages for the Windows build (Highway)." "Types: deb-src" \
	    "URIs: http://deb.debian.org/debian" "Suites: $$codename $$codename-updates" "Components: main" \
	    "Signed-By: /usr/share/keyrings/debian-archive-keyring.gpg" "" "Types: deb-src" \
	    "URIs: http://deb.debian.org/debian-security" "Suites: $$codename-security" "Components: main" \
	    "Signed-By: /usr/share/keyrings/debian-archive-keyring.gpg" > $(WINDOWS_DEB_SRC); \
	  echo "Added $(WINDOWS_DEB_SRC)"; \
	  apt-get update -qq || echo "apt-get update reported errors; using the lists it has"; }

# Highway's source, the version of the installed libhwy-dev.
$(WINDOWS_SOURCES)/highway/CMakeLists.txt: | deps-windows
	rm -rf $(WINDOWS_SOURCES) && mkdir -p $(WINDOWS_SOURCES)
	cd $(WINDOWS_SOURCES) && apt-get source -qq -o APT::Sandbox::User=root \
	  highway=$$(dpkg-query -W -f='$${Version}' libhwy-dev:$$(dpkg --print-architecture))
	mv $(WINDOWS_SOURCES)/highway-*/ $(WINDOWS_SOURCES)/highway

build-windows-%/highway/lib/cmake/hwy/hwy-config.cmake: $(WINDOWS_SOURCES)/highway/CMakeLists.txt
	cmake -S $(WINDOWS_SOURCES)/highway -B build-windows-$*/highway-build -G Ninja \
	  -DCMAKE_BUILD_TYPE=Release -DCMAKE_TOOLCHAIN_FILE=$(CURDIR)/cmake/toolchain-mingw-$*.cmake \
	  -DCMAKE_INSTALL_PREFIX=$(CURDIR)/build-windows-$*/highway $(WINDOWS_HWY_OPTIONS)
	cmake --build build-windows-$*/highway-build -j $(JOBS)
	cmake --install build-windows-$*/highway-build > /dev/null

windows: $(addprefix windows-,$(WINDOWS_ARCHS))

# build-windows-<arch>/libyuvblit.dll, its export table and imports checked.
$(addprefix windows-,$(WINDOWS_ARCHS)): windows-%: build-windows-%/highway/lib/cmake/hwy/hwy-config.cmake
	cmake -S . -B build-windows-$* -G Ninja -DCMAKE_BUILD_TYPE=Release \
	  -DCMAKE_TOOLCHAIN_FILE=cmake/toolchain-mingw-$*.cmake $(WINDOWS_OPTIONS) \
	  -Dhwy_DIR=$(CURDIR)/build-windows-$*/highway/lib/cmake/hwy
	cmake --build build-windows-$* -j $(JOBS)
	tests/windows/check_dll.sh build-windows-$*/libyuvblit.dll $*-w64-mingw32-objdump include/yuvblit.h

# Debian's 32-bit wine (the version of wine64), unpacked rather than
# installed: installed, it would take the place of 64-bit wine as `wine`.
# Without it the 32-bit run is skipped.
$(WINE32)/usr/lib/wine/wine: | deps-windows
	rm -rf $(WINE32) && mkdir -p $(WINE32)/debs
	version=$$(dpkg-query -W -f='$${Version}' wine64) && cd $(WINE32)/debs && \
	  apt-get download -qq -o APT::Sandbox::User=root wine32:i386=$$version libwine:i386=$$version || \
	  echo "Could not download Debian's wine32:i386 and libwine:i386: the 32-bit DLL will not run"
	for d in $(WINE32)/debs/*.deb; do [ ! -f $$d ] || dpkg -x $$d $(WINE32); done
	rm -rf $(WINE32)/debs

# The Linux library gives the expected digests.
test-windows: windows configure $(WINE32)/usr/lib/wine/wine
	cmake --build $(BUILD) -j $(JOBS) --target yuvblit
	tests/windows/run.sh $(BUILD)/libyuvblit.so $(addprefix build-windows-,$(WINDOWS_ARCHS))

clean:
	rm -rf $(BUILD) build-i686 build-aarch64 build-sanitize out \
	  $(WINDOWS_SOURCES) $(addprefix build-windows-,$(WINDOWS_ARCHS))
