// zivks_drive: runs the driver's entries without a fuzzer.
//
//   zivks_drive --list                  the names of all entries, one a line
//   zivks_drive --digest [--seeds=N]    the build loaded (a comment line), then one line
//                                       per entry: its name and the digest of
//                                       its results on N fixed inputs (default 200);
//                                       builds that agree bit for bit print the same
//   --only=REGEX                        (with --digest or --threads) the entries whose
//                                       names match
//   --expect=FILE                       (with --digest) compares with the lines of FILE
//                                       (a digest printed before) and fails on any
//                                       difference: every build must print the same
//   zivks_drive --threads=T [--seeds=N] the entries run from T threads at once, each
//                                       result compared with a run on one thread (the
//                                       users of the C library's generator excepted)
//   zivks_drive --entries=FILE          the entries are exactly the ZIVKS_ names of FILE
//                                       (the export list), one entry each
//   zivks_drive --replay FILE...        runs fuzz inputs (2 bytes choose the entry, the
//                                       rest are its input), as the fuzz target does
//
// A failed check of the driver aborts with a message; a thread mismatch or a bad
// argument exits with 1.
#include <dlfcn.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>

#include <algorithm>
#include <atomic>
#include <fstream>
#include <regex>
#include <iterator>
#include <string>
#include <thread>
#include <vector>

#include "drive.h"

namespace {

// The fixed input of a seed: 256 bytes; the driver's generator continues past them.
std::vector<uint8_t> seed_input(uint32_t seed) {
  std::vector<uint8_t> bytes(256);
  uint64_t s = 0x5A17C0DEull * (seed + 1);
  for (uint8_t& b : bytes) {
    s = s * 6364136223846793005ull + 1442695040888963407ull;
    b = uint8_t(s >> 56);
  }
  return bytes;
}

uint64_t entry_digest(const zd::Entry& e, uint32_t seeds) {
  zd::Digest d;
  for (uint32_t s = 0; s < seeds; ++s) {
    const std::vector<uint8_t> in = seed_input(s);
    d.add_value(zd::run_entry(e, in.data(), in.size()));
  }
  return d.value();
}

std::regex only(".");

int threads_check(unsigned threads, uint32_t seeds) {
  const auto& all = zd::entries();
  std::vector<const zd::Entry*> list;
  for (const zd::Entry& e : all)
    if (!(e.flags & zd::kSharedGenerator) && std::regex_search(e.name, only)) list.push_back(&e);
  std::vector<uint64_t> expected(list.size());
  for (size_t i = 0; i < list.size(); ++i) expected[i] = entry_digest(*list[i], seeds);

  // Every thread runs every entry; they start at different places of the list, and the
  // even ones walk it in step so that the same function runs in several threads at once.
  std::atomic<int> mismatches{0};
  std::vector<std::thread> pool;
  for (unsigned t = 0; t < threads; ++t)
    pool.emplace_back([&, t] {
      const size_t start = t % 2 ? list.size() * t / threads : 0;
      for (size_t k = 0; k < list.size(); ++k) {
        const size_t i = (start + k) % list.size();
        if (entry_digest(*list[i], seeds) != expected[i]) {
          fprintf(stderr, "thread %u: %s differs from the single-threaded run\n", t, list[i]->name);
          ++mismatches;
        }
      }
    });
  for (std::thread& th : pool) th.join();
  size_t shared = 0;
  for (const zd::Entry& e : all) shared += (e.flags & zd::kSharedGenerator) != 0;
  printf("threads: %u threads x %zu entries x %u inputs, %d mismatches (%zu entries kept to "
         "one thread: they share the C library's generator)\n",
         threads, list.size(), seeds, mismatches.load(), shared);
  return mismatches ? 1 : 0;
}

int expect_digests(const std::string& path, uint32_t seeds) {
  std::ifstream f(path);
  if (!f) {
    fprintf(stderr, "cannot read %s\n", path.c_str());
    return 1;
  }
  std::vector<std::pair<std::string, std::string>> want;
  for (std::string name, hex; f >> name;) {
    if (name[0] == '#') {
      std::getline(f, hex);
      continue;
    }
    f >> hex;
    want.emplace_back(name, hex);
  }
  const auto& all = zd::entries();
  int bad = 0;
  size_t checked = 0;
  for (const auto& [name, hex] : want) {
    const zd::Entry* e = nullptr;
    for (const zd::Entry& x : all)
      if (name == x.name) e = &x;
    if (!e || !std::regex_search(e->name, only)) {
      if (!e) fprintf(stderr, "%s: no such entry\n", name.c_str()), ++bad;
      continue;
    }
    char got[17];
    snprintf(got, sizeof got, "%016llx", (unsigned long long)entry_digest(*e, seeds));
    ++checked;
    if (hex != got) fprintf(stderr, "%s: expected %s, got %s\n", name.c_str(), hex.c_str(), got), ++bad;
  }
  if (want.size() != all.size()) fprintf(stderr, "%s has %zu digests for %zu entries\n", path.c_str(), want.size(), all.size()), ++bad;
  printf("digests: %zu checked, %d differ from %s (%s)\n", checked, bad, path.c_str(), ZIVKS_GetLibVersion()->backend);
  return bad ? 1 : 0;
}

int check_entries(const char* path) {
  std::ifstream f(path);
  if (!f) {
    fprintf(stderr, "cannot read %s\n", path);
    return 1;
  }
  std::vector<std::string> exported, listed;
  for (std::string line; std::getline(f, line);)
    if (line.rfind("ZIVKS_", 0) == 0) exported.push_back(line.substr(0, line.find_first_of(" \t\r")));
  for (const zd::Entry& e : zd::entries()) listed.push_back(e.name);
  std::sort(exported.begin(), exported.end());
  std::sort(listed.begin(), listed.end());
  int bad = 0;
  for (size_t i = 1; i < listed.size(); ++i)
    if (listed[i] == listed[i - 1]) fprintf(stderr, "two entries for %s\n", listed[i].c_str()), ++bad;
  for (const std::string& n : exported)
    if (!std::binary_search(listed.begin(), listed.end(), n)) fprintf(stderr, "no entry for %s\n", n.c_str()), ++bad;
  for (const std::string& n : listed)
    if (!std::binary_search(exported.begin(), exported.end(), n)) fprintf(stderr, "%s is not exported\n", n.c_str()), ++bad;
  printf("entries: %zu for %zu exported names, %d problems\n", listed.size(), exported.size(), bad);
  return bad ? 1 : 0;
}

int replay(int argc, char** argv, int first) {
  const auto& all = zd::entries();
  for (int i = first; i < argc; ++i) {
    std::ifstream f(argv[i], std::ios::binary);
    if (!f) {
      fprintf(stderr, "cannot read %s\n", argv[i]);
      return 1;
    }
    const std::vector<uint8_t> bytes{std::istreambuf_iterator<char>(f), {}};
    if (bytes.size() < 2) continue;
    const zd::Entry& e = all[(bytes[0] | bytes[1] << 8) % all.size()];
    zd::run_entry(e, bytes.data() + 2, bytes.size() - 2);
    printf("%s: %s passed\n", argv[i], e.name);
  }
  return 0;
}

}  // namespace

int main(int argc, char** argv) {
  uint32_t seeds = 200;
  unsigned threads = 0;
  std::string mode, expect;
  for (int i = 1; i < argc; ++i) {
    const char* a = argv[i];
    if (!strncmp(a, "--seeds=", 8)) seeds = uint32_t(atoi(a + 8));
    else if (!strncmp(a, "--threads=", 10)) threads = unsigned(atoi(a + 10)), mode = "threads";
    else if (!strncmp(a, "--only=", 7)) only = std::regex(a + 7);
    else if (!strncmp(a, "--expect=", 9)) expect = a + 9;
    else if (!strcmp(a, "--list") || !strcmp(a, "--digest")) mode = a + 2;
    else if (!strcmp(a, "--replay")) return replay(argc, argv, i + 1);
    else if (!strncmp(a, "--entries=", 10)) return check_entries(a + 10);
    else {
      fprintf(stderr, "unknown argument %s\n", a);
      return 1;
    }
  }
  const auto& all = zd::entries();
  if (mode == "list") {
    for (const zd::Entry& e : all) printf("%s\n", e.name);
  } else if (mode == "digest" && !expect.empty()) {
    return expect_digests(expect, seeds);
  } else if (mode == "digest") {
    // First the build that was loaded: the level the loader chose shows here.
    Dl_info info{};
    dladdr(reinterpret_cast<void*>(&ZIVKS_Add_32f), &info);
    printf("# %s %s\n", ZIVKS_GetLibVersion()->backend, info.dli_fname ? info.dli_fname : "?");
    for (const zd::Entry& e : all)
      if (std::regex_search(e.name, only))
        printf("%s %016llx\n", e.name, (unsigned long long)entry_digest(e, seeds));
  } else if (mode == "threads" && threads > 0) {
    return threads_check(threads, seeds);
  } else {
    fprintf(stderr, "usage: zivks_drive --list | --digest | --threads=T [--seeds=N] | --replay FILE...\n");
    return 1;
  }
  return 0;
}
