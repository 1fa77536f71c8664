# The three entry points. Each is self-sufficient on a fresh Debian machine: it installs what is
# missing, configures and builds.
BUILD_RUN   := build/run
BUILD_TEST  := build/test
BUILD_BENCH := build/bench
BUILD_FUZZ  := build/fuzz
FUZZ_SECONDS ?= 45
JOBS        ?= $(shell nproc)

.PHONY: run test bench deps clean

deps:
	@scripts/install-deps

run: deps
	@cmake -S . -B $(BUILD_RUN) -G Ninja -DCMAKE_BUILD_TYPE=RelWithDebInfo -DROFA_TESTS=OFF >/dev/null
	@cmake --build $(BUILD_RUN) -j $(JOBS) --target rofa-headless-host rofa-tool
	@$(BUILD_RUN)/rofa-headless-host --screen $(BUILD_RUN)/screen.png
	@mkdir -p out
	@$(BUILD_RUN)/rofa-tool showcase out/showcase.png
	@echo "rendered the built-in showcase document to out/showcase.png"

test: deps
	@cmake -S . -B $(BUILD_TEST) -G Ninja -DCMAKE_BUILD_TYPE=Debug -DROFA_SANITIZE=ON >/dev/null
	@cmake --build $(BUILD_TEST) -j $(JOBS)
	@rm -rf $(BUILD_TEST)/tmp && mkdir -p $(BUILD_TEST)/tmp
	@cd $(BUILD_TEST) && TMPDIR=$(CURDIR)/$(BUILD_TEST)/tmp \
		ASAN_OPTIONS=detect_leaks=1:abort_on_error=0 UBSAN_OPTIONS=print_stacktrace=1:halt_on_error=1 \
		ctest --output-on-failure -j $(JOBS)
	@cmake -S . -B $(BUILD_FUZZ) -G Ninja -DCMAKE_C_COMPILER=clang -DCMAKE_CXX_COMPILER=clang++ \
		-DCMAKE_BUILD_TYPE=RelWithDebInfo -DROFA_TESTS=OFF -DROFA_FUZZ=ON >/dev/null
	@cmake --build $(BUILD_FUZZ) -j $(JOBS) --target fuzzers
	@for source in fuzz/*.cpp; do \
		name=$$(basename $$source .cpp); f=$(BUILD_FUZZ)/$$name; \
		rm -rf $(BUILD_FUZZ)/corpus/$$name; mkdir -p $(BUILD_FUZZ)/corpus/$$name; \
		echo "== $$name for $(FUZZ_SECONDS) s"; \
		$$f -max_total_time=$(FUZZ_SECONDS) -timeout=10 -rss_limit_mb=4096 -print_final_stats=0 \
			$(BUILD_FUZZ)/corpus/$$name fuzz/corpus/$$name 2>$$f.log || { tail -n 60 $$f.log; exit 1; }; \
		grep -E '^Done' $$f.log | tail -n 1; \
	done

bench: deps
	@cmake -S . -B $(BUILD_BENCH) -G Ninja -DCMAKE_BUILD_TYPE=Release -DROFA_TESTS=OFF -DROFA_BENCHMARKS=ON >/dev/null
	@cmake --build $(BUILD_BENCH) -j $(JOBS)
	@for b in $(BUILD_BENCH)/bench_*; do echo "== $$b"; $$b --benchmark_min_time=0.2 || exit 1; done

clean:
	rm -rf build
