# make demo   set up, build, render the built-in test picture through every kernel
# make test   set up, build, run every test
# make bench  set up, build, run the benchmarks
BUILD ?= build
OUT ?= out/demo
JOBS ?= $(shell nproc)

DEBIAN_PACKAGES := cmake ninja-build g++ pkg-config libhwy-dev libpng-dev \
  libcli11-dev libgtest-dev libbenchmark-dev libyuv-dev libswscale-dev

.PHONY: all deps configure build demo test bench clean

all: build

# Installs the Debian packages the build needs when any is missing (as root).
deps:
	@missing=$$(for p in $(DEBIAN_PACKAGES); do \
	  dpkg-query -W -f='$${Status}\n' $$p 2>/dev/null | grep -q 'install ok installed' || echo $$p; done); \
	if [ -n "$$missing" ]; then \
	  if [ "$$(id -u)" = 0 ]; then \
	    echo "Installing: $$missing"; \
	    apt-get update -qq && DEBIAN_FRONTEND=noninteractive apt-get install -y -qq $$missing; \
	  else \
	    echo "Missing Debian packages: $$missing (run as root, or: sudo apt-get install $$missing)"; exit 1; \
	  fi; \
	fi

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

clean:
	rm -rf $(BUILD) out
