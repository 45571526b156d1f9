# The project's entry points: make demo, make test, make bench (each installs what it needs first).
BUILD ?= build
JOBS ?= $(shell nproc)
CMAKE_FLAGS ?=

SANITIZE_BUILD ?= build-sanitize
FUZZ_BUILD ?= build-fuzz
FUZZ_SECONDS ?= 60
# Sanitizer runs stop at the first report; LeakSanitizer skips only what the font and drawing
# libraries keep for the life of the process (fuzz/lsan.supp).
UNINSTRUMENTED_HOSTS = python
SANITIZER_ENV = ASAN_OPTIONS=detect_leaks=1:abort_on_error=1 \
  UBSAN_OPTIONS=print_stacktrace=1:halt_on_error=1 \
  LSAN_OPTIONS=suppressions=$(CURDIR)/fuzz/lsan.supp:print_suppressions=0

.PHONY: deps build demo test test-plain bench clean test-sanitize fuzz

deps:
	@bash scripts/install-deps.sh

build: deps
	@cmake -S . -B $(BUILD) -G Ninja $(CMAKE_FLAGS) >/dev/null
	@cmake --build $(BUILD) -j $(JOBS)

demo: build
	@$(BUILD)/cli/quorvel demo --out demo-output

# CI (or QUORVEL_SANITIZE_TESTS=1) runs the whole suite once, built with the sanitizers; elsewhere
# the ordinary build runs it, and make test-sanitize runs the sanitizer suite on its own.
test: deps
	@if [ -n "$$CI" ] || [ "$$QUORVEL_SANITIZE_TESTS" = 1 ]; then \
	  $(MAKE) --no-print-directory test-sanitize; \
	else \
	  $(MAKE) --no-print-directory test-plain; \
	fi

test-plain: build
	@bash scripts/install-deps.sh cups
	@cd $(BUILD) && ctest --output-on-failure -j $(JOBS)
	@echo "test: the AddressSanitizer/UBSan run was skipped (it replaces this run when CI is set or QUORVEL_SANITIZE_TESTS=1; or run make test-sanitize)"

# The whole suite built with -DQUORVEL_SANITIZE=ON (AddressSanitizer + UndefinedBehaviorSanitizer).
test-sanitize: deps
	@bash scripts/install-deps.sh cups
	@cmake -S . -B $(SANITIZE_BUILD) -G Ninja -DQUORVEL_SANITIZE=ON $(CMAKE_FLAGS) >/dev/null
	@$(SANITIZER_ENV) cmake --build $(SANITIZE_BUILD) -j $(JOBS)
	@# A host program not built with the sanitizers (the Python hosts) loads the instrumented
	@# library only with the runtime preloaded, and with the C++ runtime beside it so that the
	@# runtime finds the real exception functions; the interpreter's own leaks at exit are not ours.
	@cd $(SANITIZE_BUILD) && $(SANITIZER_ENV) ASAN_OPTIONS=detect_leaks=0:abort_on_error=1 \
	  LD_PRELOAD="$$($(CXX) -print-file-name=libasan.so) $$($(CXX) -print-file-name=libstdc++.so)" \
	  ctest --output-on-failure -R '$(UNINSTRUMENTED_HOSTS)'
	@cd $(SANITIZE_BUILD) && $(SANITIZER_ENV) ctest --output-on-failure -j $(JOBS) -E '$(UNINSTRUMENTED_HOSTS)'

# libFuzzer targets built with clang and the sanitizers, each run for FUZZ_SECONDS.
fuzz: deps
	@bash scripts/install-deps.sh fuzz
	@CXX=clang++ cmake -S . -B $(FUZZ_BUILD) -G Ninja -DQUORVEL_SANITIZE=ON -DQUORVEL_FUZZ=ON \
	  -DCMAKE_CXX_FLAGS=-fsanitize=fuzzer-no-link >/dev/null
	@cmake --build $(FUZZ_BUILD) -j $(JOBS) --target fuzz_document fuzz_text_fitting fuzz_dispatch
	@bash fuzz/run.sh $(FUZZ_BUILD) $(FUZZ_SECONDS)

bench: build
	@$(BUILD)/bench/quorvel_bench

clean:
	rm -rf $(BUILD) $(SANITIZE_BUILD) $(FUZZ_BUILD) demo-output
