// The harness: the shared arrays, the generic twin, the registration of every case at
// every size next to its baseline, twin and peer, and the table of ratios.
//
//   zivks_bench [FILTER] [--min-time=S] [--rounds=N] [--sizes=L1,L2,MEM] [--list]
//               [--markdown] [--verbose] [--json=FILE] [--benchmark_...]
// FILTER is a regular expression searched in "family/Label" (e.g. "float_add_sub" or
// "Copy_(8u|32f)$"); the --benchmark_ flags go to Google Benchmark. Each case runs N
// rounds (default 3) of at least S seconds (default 0.01; memory sizes 2.5 S), the
// function, its baseline, its generic build and its peer taking turns, and the table
// keeps the fastest round of each. --markdown prints the table for a document, --verbose
// Google Benchmark's own lines as well. Families of a shape of their own (zb::Suite, e.g.
// sorting) take the same filter and options and print their own table below this one.
// --json=FILE also writes every row of every table, with the machine, the build and the
// peers' versions, to FILE (the input of scripts/bench-report).
#include "bench/zb.h"

#include <dlfcn.h>
#include <gnu/libc-version.h>
#include <stdio.h>
#include <string.h>
#include <sys/mman.h>
#include <time.h>
#include <unistd.h>
#include <volk/volk.h>
#include <xxhash.h>

#include <benchmark/benchmark.h>
#include <boost/version.hpp>
#include <hwy/highway.h>

#include <algorithm>
#include <cmath>
#include <fstream>
#include <map>
#include <regex>
#include <string>
#include <vector>

#include "zivk_core.h"

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

// The options of this invocation, as the JSON header repeats them.
struct RunOptions {
  std::string command, filter, sizes, json;
  int rounds = 3;
  double min_time = 0.01;
};

const char* const kBaseNames[] = {"memcpy", "memset", "memset0"};

// The row of case ci at size si: ours against its baseline, generic build and peer, with
// the targets (the baseline's where the data is cached, the peer's everywhere). Rows not
// timed have no seconds.
ResultRow case_row(size_t ci, int si) {
  const Case& c = cases()[ci];
  const auto& r = results()[ci][si];
  ResultRow x;
  x.family = c.family;
  x.label = c.label;
  x.symbol = c.symbol;
  x.size = kSizes[si].name;
  x.elements = elements(c, si);
  x.bytes = x.elements * static_cast<double>(c.elem_bytes);
  x.seconds = r[kNative].seconds;
  auto add = [&](Yardstick::Kind kind, const std::string& name, double seconds, double target) {
    Yardstick y;
    y.name = name;
    y.kind = kind;
    y.seconds = seconds;
    y.ratio = seconds / x.seconds;
    y.target = target;
    // As printed: a ratio that shows as the target meets it.
    y.met = !(target > 0) || !std::isfinite(y.ratio) || std::round(100 * y.ratio) >= std::round(100 * target);
    x.against.push_back(y);
    if (!y.met) {
      x.notes += x.notes.empty() ? "" : " ";
      x.notes += kind == Yardstick::kBase ? "MISS base" : "MISS peer";
    }
  };
  x.notes = c.peer_name;
  add(Yardstick::kBase, kBaseNames[c.baseline], r[kBase].seconds, kSizes[si].cached ? c.base_target : 0);
  if (twin() != nullptr) add(Yardstick::kGeneric, "generic build", r[kGeneric].seconds, 0);
  if (c.peer) add(Yardstick::kPeer, c.peer_name, r[kPeer].seconds, 1.0);
  return x;
}

std::string ratio_text(const ResultRow& x, Yardstick::Kind kind) {
  for (const Yardstick& y : x.against)
    if (y.kind == kind && y.ratio > 0 && std::isfinite(y.ratio)) {
      char b[16];
      snprintf(b, sizeof b, "%.2f", y.ratio);
      return b;
    }
  return "-";
}

// ---- JSON ---------------------------------------------------------------------------

class Json {
 public:
  explicit Json(FILE* f) : f_(f) {}

  void open(char bracket) {
    comma();
    fputc(bracket, f_);
    first_ = true;
  }
  void close(char bracket) {
    fputc(bracket, f_);
    first_ = false;
  }
  // A member's key; the value follows.
  Json& key(const char* k) {
    comma();
    text(k);
    fputc(':', f_);
    first_ = true;
    return *this;
  }
  void value(const std::string& v) {
    comma();
    text(v);
  }
  void value(const char* v) { value(std::string(v)); }
  void value(double v) {
    comma();
    if (std::isfinite(v)) fprintf(f_, "%.9g", v);
    else fputs("null", f_);
  }
  void value(bool v) {
    comma();
    fputs(v ? "true" : "false", f_);
  }
  void null() {
    comma();
    fputs("null", f_);
  }
  // Before an element of an array: a line break, so that the file reads (and diffs) a
  // row a line.
  void row_break() {
    comma();
    fputc('\n', f_);
    first_ = true;
  }
  void line_end() { fputc('\n', f_); }

 private:
  void comma() {
    if (!first_) fputc(',', f_);
    first_ = false;
  }
  void text(const std::string& s) {
    fputc('"', f_);
    for (const unsigned char ch : s) {
      if (ch == '"' || ch == '\\') fprintf(f_, "\\%c", ch);
      else if (ch < 0x20) fprintf(f_, "\\u%04x", ch);
      else fputc(ch, f_);
    }
    fputc('"', f_);
  }

  FILE* f_;
  bool first_ = true;
};

const char* const kKindNames[] = {"base", "generic", "self", "peer"};

void write_row(Json& j, const ResultRow& x) {
  j.row_break();
  j.open('{');
  j.key("family").value(x.family);
  j.key("label").value(x.label);
  j.key("function").value(short_name(x.symbol.c_str()));
  j.key("symbol").value(x.symbol);
  j.key("size").value(x.size);
  if (x.input_kind.empty()) {
    j.key("input_kind").null();
    j.key("input").null();
  } else {
    j.key("input_kind").value(x.input_kind);
    j.key("input").value(x.input);
  }
  j.key("items").value(x.items);
  j.key("elements").value(x.elements);
  j.key("bytes").value(x.bytes);
  j.key("seconds").value(x.seconds);
  j.key("elements_per_s").value(x.elements / x.seconds);
  j.key("bytes_per_s").value(x.bytes / x.seconds);
  j.key("subtracted").open('[');
  for (const auto& [name, seconds] : x.subtracted) {
    j.open('{');
    j.key("name").value(name);
    j.key("seconds").value(seconds);
    j.close('}');
  }
  j.close(']');
  j.key("against").open('[');
  bool all_met = true, any_target = false;
  for (const Yardstick& y : x.against) {
    const bool judged = y.target > 0 && std::isfinite(y.ratio);
    j.open('{');
    j.key("kind").value(kKindNames[y.kind]);
    j.key("name").value(y.name);
    j.key("seconds").value(y.seconds);
    j.key("ratio").value(y.ratio);
    j.key("target").value(y.target > 0 ? y.target : NAN);
    if (judged) j.key("met").value(y.met);
    else j.key("met").null();
    if (!y.notes.empty()) j.key("notes").value(y.notes);
    j.close('}');
    any_target = any_target || judged;
    all_met = all_met && (!judged || y.met);
  }
  j.close(']');
  if (any_target) j.key("targets_met").value(all_met);
  else j.key("targets_met").null();
  j.key("notes").value(x.notes);
  j.close('}');
}

// "02.05.02" as "2.5.2".
std::string plain_version(const char* v) {
  std::string out;
  for (const char* p = v; *p != 0; ++p)
    if (!(*p == '0' && (p == v || p[-1] == '.') && p[1] != 0 && p[1] != '.')) out += *p;
  return out;
}

std::string utc_now(const char* format) {
  const time_t now = time(nullptr);
  struct tm t;
  gmtime_r(&now, &t);
  char b[64];
  strftime(b, sizeof b, format, &t);
  return b;
}

// Writes every row of every table to o.json; false where the file cannot be written.
bool write_json(const RunOptions& o, const std::vector<ResultRow>& rows) {
  FILE* f = fopen(o.json.c_str(), "w");
  if (f == nullptr) return false;
  Json j(f);
  j.open('{');
  j.key("format").value("zivks-bench 1");
  j.key("date").value(utc_now("%Y-%m-%dT%H:%M:%SZ"));
  j.key("command").value(o.command);
  j.key("options").open('{');
  j.key("filter").value(o.filter);
  j.key("sizes").value(o.sizes);
  j.key("rounds").value(static_cast<double>(o.rounds));
  j.key("min_time").value(o.min_time);
  j.close('}');
  j.key("machine").open('{');
  j.key("cpu").value(cpu_name());
  j.key("cores").value(static_cast<double>(benchmark::CPUInfo::Get().num_cpus));
  j.close('}');
  const ZIVKLibVersion* v = ZIVK_GetLibVersion();
  j.key("library").open('{');
  j.key("version").value(v != nullptr && v->version != nullptr ? v->version : "unknown");
  j.key("backend").value(ZB_BACKEND);
  if (strcmp(ZB_BACKEND, "x86") == 0) j.key("x86_level").value(ZB_X86_LEVEL);
  else j.key("x86_level").null();
  j.key("build_type").value(ZB_BUILD_TYPE);
  const char* commit = getenv("ZB_COMMIT");
  if (commit != nullptr && commit[0] != 0) j.key("commit").value(commit);
  else j.key("commit").null();
  j.key("generic_twin").value(twin() != nullptr);
  j.close('}');
  j.key("peers").open('{');
  j.key("volk").value(plain_version(ZB_STR(VOLK_VERSION_MAJOR) "." ZB_STR(VOLK_VERSION_MINOR) "." ZB_STR(
                          VOLK_VERSION_MAINT)) +
                      " (machine " + volk_get_machine() + ")");
  const unsigned xxh = XXH_versionNumber();
  j.key("xxhash").value(std::to_string(xxh / 10000) + "." + std::to_string(xxh / 100 % 100) + "." +
                        std::to_string(xxh % 100));
  j.key("libstdc++").value("GCC " ZB_STR(__GNUC__) "." ZB_STR(__GNUC_MINOR__));
  j.key("glibc").value(gnu_get_libc_version());
  j.key("boost").value(std::to_string(BOOST_VERSION / 100000) + "." + std::to_string(BOOST_VERSION / 100 % 1000));
  j.key("highway").value(ZB_STR(HWY_MAJOR) "." ZB_STR(HWY_MINOR) "." ZB_STR(HWY_PATCH));
  j.close('}');
  j.key("rows").open('[');
  for (const ResultRow& x : rows) write_row(j, x);
  j.line_end();
  j.close(']');
  j.close('}');
  j.line_end();
  return fclose(f) == 0;
}

// Collects the runs; prints the table at the end.
class TableReporter : public benchmark::BenchmarkReporter {
 public:
  TableReporter(bool verbose, bool markdown, const RunOptions& options)
      : verbose_(verbose), markdown_(markdown), options_(options) {}

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

  bool json_failed() const { return json_failed_; }

 private:
  void print_cases(const std::vector<ResultRow>& rows);

  bool verbose_, markdown_;
  RunOptions options_;
  bool json_failed_ = false;
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
  // Every row of every table, the element-wise ones first.
  std::vector<ResultRow> rows;
  for (size_t ci = 0; ci < cases().size(); ++ci)
    for (int si = 0; si < 3; ++si) {
      ResultRow x = case_row(ci, si);
      if (x.seconds > 0) rows.push_back(std::move(x));
    }
  if (!cases().empty()) print_cases(rows);
  // The suites' tables follow, each with its own notes and count of targets missed.
  for (const Suite* s : active_suites()) {
    printf("\n");
    s->print(suite_options());
    if (s->rows)
      for (ResultRow& x : s->rows(suite_options())) rows.push_back(std::move(x));
  }
  if (!options_.json.empty()) {
    fflush(stdout);
    if (write_json(options_, rows)) {
      fprintf(stderr, "results: %s (%zu rows)\n", options_.json.c_str(), rows.size());
    } else {
      fprintf(stderr, "cannot write %s\n", options_.json.c_str());
      json_failed_ = true;
    }
  }
}

// The table of the element-wise cases, given their rows.
void TableReporter::print_cases(const std::vector<ResultRow>& rows) {
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
  int misses = 0;
  for (const ResultRow& x : rows) {
    for (const Yardstick& y : x.against) misses += y.met ? 0 : 1;
    printf(row, x.label.c_str(), x.size.c_str(), std::to_string(static_cast<int64_t>(x.elements)).c_str(),
           rate(x.elements / x.seconds, "").c_str(), rate(x.bytes / x.seconds, "B").c_str(),
           x.against[0].name.c_str(), ratio_text(x, Yardstick::kBase).c_str(),
           ratio_text(x, Yardstick::kGeneric).c_str(), ratio_text(x, Yardstick::kPeer).c_str(),
           x.notes.c_str());
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
  std::string sizes = "L1,L2,MEM", json, command = "zivks_bench";
  std::vector<char*> rest{argv[0]};
  for (int i = 1; i < argc; ++i) {
    const std::string a = argv[i];
    command += " " + a;
    if (a.rfind("--min-time=", 0) == 0) min_time = atof(a.c_str() + 11);
    else if (a.rfind("--json=", 0) == 0) json = a.substr(7);
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
  if (!json.empty()) {
    // Found out now rather than after the run.
    const size_t slash = json.rfind('/');
    const std::string dir = slash == std::string::npos ? "." : json.substr(0, slash + (slash == 0));
    if (access(dir.c_str(), W_OK) != 0) {
      fprintf(stderr, "cannot write %s\n", json.c_str());
      return 1;
    }
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
  RunOptions run_options{command, filter, sizes, json, rounds, min_time};
  TableReporter reporter(verbose, markdown, run_options);
  benchmark::RunSpecifiedBenchmarks(&reporter);
  benchmark::Shutdown();
  return reporter.json_failed() ? 1 : 0;
}
