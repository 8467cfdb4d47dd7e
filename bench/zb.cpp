// The harness: the shared arrays, the generic twin, the registration of every case at
// every size next to its baseline, twin and peer, and the table of ratios.
//
//   zivks_bench [FILTER] [--min-time=S] [--rounds=N] [--sizes=L1,L2,MEM] [--list]
//               [--markdown] [--verbose] [--benchmark_...]
// FILTER is a regular expression searched in "family/Label" (e.g. "float_add_sub" or
// "Copy_(8u|32f)$"); the --benchmark_ flags go to Google Benchmark. Each case runs N
// rounds (default 3) of at least S seconds (default 0.01; memory sizes 2.5 S), the
// function, its baseline, its generic build and its peer taking turns, and the table
// keeps the fastest round of each. --markdown prints the table for a document, --verbose
// Google Benchmark's own lines as well. Families of a shape of their own (zb::Suite, e.g.
// sorting) take the same filter and options and print their own table below this one.
#include "bench/zb.h"

#include <dlfcn.h>
#include <stdio.h>
#include <string.h>
#include <sys/mman.h>
#include <volk/volk.h>

#include <benchmark/benchmark.h>

#include <algorithm>
#include <cmath>
#include <fstream>
#include <map>
#include <regex>
#include <string>
#include <vector>

#define ZB_STR2(x) #x
#define ZB_STR(x) ZB_STR2(x)

namespace zb {

// ---- the generic twin ---------------------------------------------------------------

void* twin() {
  static void* lib = [] {
    const char* path = ZB_TWIN_PATH;
    return path[0] ? dlopen(path, RTLD_NOW | RTLD_LOCAL) : nullptr;
  }();
  return lib;
}

namespace {

std::vector<Case>& cases() {
  static std::vector<Case> v;
  return v;
}

struct Peer {
  std::string label, name;
  std::function<void(const Arrays&, int32_t)> call;
};
std::vector<Peer>& peers() {
  static std::vector<Peer> v;
  return v;
}

std::vector<Suite>& suites() {
  static std::vector<Suite> v;
  return v;
}
// The suites with runs in this invocation, and the options they were given.
std::vector<const Suite*>& active_suites() {
  static std::vector<const Suite*> v;
  return v;
}
SuiteOptions& suite_options() {
  static SuiteOptions o;
  return o;
}

// ---- the arrays ---------------------------------------------------------------------

// One mapping holds all arrays; each starts a few cache lines after a page boundary,
// shifted differently, so that loads and stores of a step never share a 4 KiB offset.
struct Pool {
  Arrays a{};
  size_t filled = 0;  // bytes of every array filled so far
  bool ok = false;

  Pool() {
    constexpr int kArrays = Arrays::kSources + Arrays::kDests;
    const size_t stride = Arrays::kBytes + (size_t{1} << 16);
    void* m = mmap(nullptr, stride * kArrays, PROT_READ | PROT_WRITE,
                   MAP_PRIVATE | MAP_ANONYMOUS | MAP_NORESERVE, -1, 0);
    if (m == MAP_FAILED) return;
    madvise(m, stride * kArrays, MADV_HUGEPAGE);
    auto* base = static_cast<unsigned char*>(m);
    for (int k = 0; k < kArrays; ++k) {
      unsigned char* p = base + stride * k + 1088 * static_cast<size_t>(k);
      if (k < Arrays::kSources) a.s[k] = p;
      else a.d[k - Arrays::kSources] = p;
    }
    ok = true;
  }

  // Fills the first `bytes` of every array (once).
  void prepare(size_t bytes) {
    if (bytes <= filled) return;
    uint64_t x = 0x9E3779B97F4A7C15ull ^ filled;
    auto fill = [&](unsigned char* p) {
      for (size_t o = filled; o < bytes; o += 4) {
        x ^= x << 13, x ^= x >> 7, x ^= x << 17;
        const uint32_t w = 0x3F800000u | static_cast<uint32_t>(x & 0x7FFFFF);
        memcpy(p + o, &w, 4);
      }
    };
    for (auto* p : a.s) fill(p);
    for (auto* p : a.d) fill(p);
    filled = bytes;
  }
};

Pool& pool() {
  static Pool p;
  return p;
}

// ---- sizes and results ----------------------------------------------------------------

// Bytes of the widest array of a call at each size.
struct Size {
  const char* name;
  size_t bytes;
  bool cached;  // the targets on the baseline hold at cached sizes
};
const Size kSizes[] = {{"L1", size_t{4} << 10, true},
                       {"L2", size_t{256} << 10, true},
                       {"MEM", size_t{64} << 20, false}};

int32_t elements(const Case& c, int size_index) {
  return static_cast<int32_t>(kSizes[size_index].bytes / std::max(c.in_bytes, c.elem_bytes));
}

enum Variant { kBase, kNative, kGeneric, kPeer, kVariants };
const char* const kVariantNames[] = {"base", "native", "generic", "peer"};

struct Slot {
  size_t case_index;
  int size_index;
  Variant variant;
};
struct Result {
  double seconds = NAN;  // per call
};

std::map<std::string, Slot>& slots() {
  static std::map<std::string, Slot> m;
  return m;
}
// results[case][size][variant]
std::vector<std::vector<std::vector<Result>>>& results() {
  static std::vector<std::vector<std::vector<Result>>> r;
  return r;
}

std::string cpu_name() {
  std::ifstream f("/proc/cpuinfo");
  std::string line, model, family, number;
  auto value = [](const std::string& l) {
    const auto c = l.find(':');
    return c == std::string::npos ? std::string() : l.substr(l.find_first_not_of(" \t", c + 1));
  };
  while (std::getline(f, line)) {
    if (model.empty() && line.rfind("model name", 0) == 0) model = value(line);
    else if (family.empty() && line.rfind("cpu family", 0) == 0) family = value(line);
    else if (number.empty() && line.rfind("model", 0) == 0 && line.rfind("model name", 0) != 0)
      number = value(line);
  }
  if (model.empty()) model = "unknown CPU";
  if (!family.empty()) model += " (family " + family + ", model " + number + ")";
  return model;
}

std::string ratio(double num, double den) {
  if (!(num > 0) || !(den > 0)) return "-";
  char b[16];
  snprintf(b, sizeof b, "%.2f", num / den);
  return b;
}

// Collects the runs; prints the table at the end.
class TableReporter : public benchmark::BenchmarkReporter {
 public:
  TableReporter(bool verbose, bool markdown) : verbose_(verbose), markdown_(markdown) {}

  bool ReportContext(const Context& c) override {
    if (verbose_) console_.ReportContext(c);
    return true;
  }

  void ReportRuns(const std::vector<Run>& runs) override {
    if (verbose_) console_.ReportRuns(runs);
    for (const Run& r : runs) {
      if (r.error_occurred || r.run_type != Run::RT_Iteration || r.iterations == 0) continue;
      const auto it = slots().find(r.run_name.function_name);
      if (it == slots().end()) {
        const std::string& name = r.run_name.function_name;
        for (const Suite* s : active_suites())
          if (name.compare(0, s->family.size() + 1, s->family + "/") == 0)
            s->record(name, r.cpu_accumulated_time / static_cast<double>(r.iterations));
        continue;
      }
      const Slot& s = it->second;
      // The fastest round, in processor time of this thread: the machine may be busy
      // with other work, and time spent waiting for the processor is not ours.
      double& best = results()[s.case_index][s.size_index][s.variant].seconds;
      const double t = r.cpu_accumulated_time / static_cast<double>(r.iterations);
      if (!(best <= t)) best = t;
    }
    fputc('.', stderr);
    fflush(stderr);
  }

  void Finalize() override;

 private:
  void print_cases();

  bool verbose_, markdown_;
  benchmark::ConsoleReporter console_;
};

void TableReporter::Finalize() {
  fputc('\n', stderr);
  const char* lead = markdown_ ? "- " : "";
  printf("%smachine: %s, %d cores\n", lead, cpu_name().c_str(),
         benchmark::CPUInfo::Get().num_cpus);
  printf("%slibrary: %s backend%s, built %s\n", lead, ZB_BACKEND,
         strcmp(ZB_BACKEND, "x86") == 0 ? (std::string(", level ") + ZB_X86_LEVEL).c_str() : "",
         ZB_BUILD_TYPE);
  if (!cases().empty()) print_cases();
  // The suites' tables follow, each with its own notes and count of targets missed.
  for (const Suite* s : active_suites()) {
    printf("\n");
    s->print(suite_options());
  }
}

// The table of the element-wise cases.
void TableReporter::print_cases() {
  const char* lead = markdown_ ? "- " : "";
  printf("%sgeneric: %s\n", lead,
         twin() ? "the generic-backend build of the same sources, -O3"
                : "none (this build is the generic backend)");
  printf("%speer: VOLK %s, machine %s\n", lead,
         ZB_STR(VOLK_VERSION_MAJOR) "." ZB_STR(VOLK_VERSION_MINOR) "." ZB_STR(VOLK_VERSION_MAINT),
         volk_get_machine());
  printf("%sbytes are those of the output; base is memcpy or memset (of 0x5A, or of zeros:"
         " memset0) of the same bytes; a ratio"
         " is speed over speed (above 1: this library is faster)\n\n", lead);
  const char* row = markdown_ ? "| %s | %s | %s | %s | %s | %s | %s | %s | %s | %s |\n"
                              : "%-22s %-4s %9s %12s %12s %7s %7s %7s %7s  %s\n";
  printf(row, "function", "size", "elements", "elements/s", "bytes/s", "base", "vs base",
         "vs gen", "vs peer", "peer, targets missed");
  if (markdown_) printf("|---|---|--:|--:|--:|---|--:|--:|--:|---|\n");
  const char* kBaseName[] = {"memcpy", "memset", "memset0"};
  int misses = 0;
  for (size_t ci = 0; ci < cases().size(); ++ci) {
    const Case& c = cases()[ci];
    for (int si = 0; si < 3; ++si) {
      const auto& r = results()[ci][si];
      const double t = r[kNative].seconds;
      if (!(t > 0)) continue;
      const double n = elements(c, si);
      const double speed = 1 / t;
      std::string notes = c.peer_name;
      auto check = [&](double other_seconds, double target, const char* what) {
        if (!(target > 0) || !(other_seconds > 0)) return;
        // As printed: a ratio that shows as the target meets it.
        if (std::round(100 * other_seconds / t) < std::round(100 * target)) {
          notes += notes.empty() ? "" : " ";
          notes += std::string("MISS ") + what;
          ++misses;
        }
      };
      // The baseline target holds where the data is cached, the peer's everywhere.
      if (kSizes[si].cached) check(r[kBase].seconds, c.base_target, "base");
      if (!c.peer_name.empty()) check(r[kPeer].seconds, 1.0, "peer");
      printf(row, c.label.c_str(), kSizes[si].name, std::to_string(elements(c, si)).c_str(),
             rate(n * speed, "").c_str(), rate(n * c.elem_bytes * speed, "B").c_str(),
             kBaseName[c.baseline], ratio(speed, 1 / r[kBase].seconds).c_str(),
             ratio(speed, 1 / r[kGeneric].seconds).c_str(),
             ratio(speed, 1 / r[kPeer].seconds).c_str(), notes.c_str());
    }
  }
  printf("\n%stargets missed: %d\n", lead, misses);
}

// The baseline of a case at n elements: memcpy or memset of the output bytes.
void run_base(const Case& c, const Arrays& a, int32_t n) {
  const size_t bytes = c.elem_bytes * static_cast<size_t>(n);
  if (c.baseline == kMemcpy) memcpy(a.d[0], a.s[0], bytes);
  else memset(a.d[0], c.baseline == kMemset ? 0x5A : 0, bytes);
}

}  // namespace

std::string rate(double per_second, const char* unit) {
  if (!std::isfinite(per_second)) return "-";
  const char* prefix[] = {"", "K", "M", "G", "T"};
  int i = 0;
  while (per_second >= 1000 && i < 4) per_second /= 1000, ++i;
  char b[32];
  snprintf(b, sizeof b, "%.2f %s%s", per_second, prefix[i], unit);
  return b;
}

int add_case(Case c) {
  cases().push_back(std::move(c));
  return static_cast<int>(cases().size());
}

int add_suite(Suite s) {
  suites().push_back(std::move(s));
  return static_cast<int>(suites().size());
}

int add_peer(const std::string& label, const std::string& peer_name,
             std::function<void(const Arrays&, int32_t n)> call) {
  peers().push_back({label, peer_name, std::move(call)});
  return static_cast<int>(peers().size());
}

}  // namespace zb

int main(int argc, char** argv) {
  using namespace zb;
  std::string filter;
  double min_time = 0.01;
  int rounds = 3;
  bool list = false, verbose = false, markdown = false;
  std::string sizes = "L1,L2,MEM";
  std::vector<char*> rest{argv[0]};
  for (int i = 1; i < argc; ++i) {
    const std::string a = argv[i];
    if (a.rfind("--min-time=", 0) == 0) min_time = atof(a.c_str() + 11);
    else if (a.rfind("--sizes=", 0) == 0) sizes = a.substr(8);
    else if (a.rfind("--rounds=", 0) == 0) rounds = std::max(1, atoi(a.c_str() + 9));
    else if (a == "--list") list = true;
    else if (a == "--verbose") verbose = true;
    else if (a == "--markdown") markdown = true;
    else if (a.rfind("--", 0) == 0) rest.push_back(argv[i]);
    else filter = a;
  }
  int rest_argc = static_cast<int>(rest.size());
  benchmark::Initialize(&rest_argc, rest.data());
  if (benchmark::ReportUnrecognizedArguments(rest_argc, rest.data())) return 1;

  // Peers join their cases; the filter picks cases.
  std::vector<Case> all;
  all.swap(cases());
  for (const Peer& p : peers())
    for (Case& c : all)
      if (c.label == p.label) c.peer_name = p.name, c.peer = p.call;
  const std::regex re(filter);
  for (Case& c : all)
    if (filter.empty() || std::regex_search(c.family + "/" + c.label, re)) cases().push_back(c);
  SuiteOptions& so = suite_options();
  so.selected = [&re, &filter](const std::string& name) {
    return filter.empty() || std::regex_search(name, re);
  };
  so.rounds = rounds;
  so.min_time = min_time;
  so.markdown = markdown;
  if (list) {
    for (const Case& c : cases())
      printf("%s/%s%s%s\n", c.family.c_str(), c.label.c_str(), c.peer_name.empty() ? "" : "  peer ",
             c.peer_name.c_str());
    for (const Suite& s : suites()) s.list(so);
    return 0;
  }
  if (!pool().ok) {
    fprintf(stderr, "cannot map the benchmark arrays\n");
    return 1;
  }

  results().assign(cases().size(), std::vector<std::vector<Result>>(3, std::vector<Result>(kVariants)));
  for (size_t ci = 0; ci < cases().size(); ++ci) {
    const Case* c = &cases()[ci];
    const void* generic = twin() ? dlsym(twin(), c->symbol.c_str()) : nullptr;
    for (int si = 0; si < 3; ++si) {
      if (sizes.find(kSizes[si].name) == std::string::npos) continue;
      const int32_t n = elements(*c, si);
      for (int round = 0; round < rounds; ++round)
      for (int v = 0; v < kVariants; ++v) {
        if (v == kGeneric && generic == nullptr) continue;
        if (v == kPeer && !c->peer) continue;
        const std::string name = c->family + "/" + c->label + "/" + kSizes[si].name + "/" +
                                 kVariantNames[v] + "/" + std::to_string(round);
        slots()[name] = Slot{ci, si, static_cast<Variant>(v)};
        auto body = [c, n, v, si, generic](benchmark::State& st) {
          pool().prepare(kSizes[si].bytes);
          const Arrays& a = pool().a;
          for (auto _ : st) {
            switch (v) {
              case kBase: run_base(*c, a, n); break;
              case kNative: c->call(c->native, a, n); break;
              case kGeneric: c->call(generic, a, n); break;
              default: c->peer(a, n); break;
            }
            benchmark::ClobberMemory();
          }
          st.SetItemsProcessed(st.iterations() * n);
          st.SetBytesProcessed(st.iterations() * n * static_cast<int64_t>(c->elem_bytes));
        };
        benchmark::RegisterBenchmark(name.c_str(), body)
            ->MinTime(kSizes[si].cached ? min_time : 2.5 * min_time);
      }
    }
  }
  size_t suite_runs = 0;
  for (const Suite& s : suites()) {
    const size_t added = s.add(so);
    if (added > 0) active_suites().push_back(&s), suite_runs += added;
  }
  fprintf(stderr, "%zu functions, %zu runs ", cases().size(), slots().size() + suite_runs);
  TableReporter reporter(verbose, markdown);
  benchmark::RunSpecifiedBenchmarks(&reporter);
  benchmark::Shutdown();
  return 0;
}
