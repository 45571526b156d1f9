# The project's entry points: make demo, make test, make bench (each installs what it needs first).
BUILD ?= build
JOBS ?= $(shell nproc)
CMAKE_FLAGS ?=

.PHONY: deps build demo test bench clean

deps:
	@bash scripts/install-deps.sh

build: deps
	@cmake -S . -B $(BUILD) -G Ninja $(CMAKE_FLAGS) >/dev/null
	@cmake --build $(BUILD) -j $(JOBS)

demo: build
	@$(BUILD)/cli/quorvel demo --out demo-output

test: build
	@bash scripts/install-deps.sh cups
	@cd $(BUILD) && ctest --output-on-failure -j $(JOBS)

bench: build
	@$(BUILD)/bench/quorvel_bench

clean:
	rm -rf $(BUILD) demo-output
