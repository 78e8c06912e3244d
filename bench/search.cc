// Dial-pad search speed on generated devices of 1,000, 10,000 and 100,000
// contacts (sizes can be given as arguments): loading by encoding from the
// address-book database against loading from the cache file, and keystroke
// search time (the first key pair over all persons, then each narrowing
// key), median and p99. A plain SQLite peer runs in the same process on the
// same encoded forms: a table of the four forms and the number, searched
// with instr() for the same key in the same order of forms, classes
// computed in SQL. Times are CPU time of the thread. Printed: our time, the
// peer's, the ratio and the bytes scanned per second.
#include <benchmark/benchmark.h>
#include <sqlite3.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <filesystem>
#include <random>
#include <string>
#include <vector>

#include "devicegen/device_image.h"
#include "platform/sim/sim_platform.h"
#include "search/searcher.h"

namespace {

// Times are the thread's CPU time, so that other work on a shared machine
// does not count against either side.
struct Clock {
  using time_point = double;
  static double now() {
    timespec ts;
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &ts);
    return ts.tv_sec + ts.tv_nsec * 1e-9;
  }
};

double seconds(double from) { return Clock::now() - from; }

struct Stats {
  double median = 0, p99 = 0;
};

Stats stats(std::vector<double> v) {
  if (v.empty()) return {};
  std::sort(v.begin(), v.end());
  return {v[v.size() / 2], v[std::min(v.size() - 1, v.size() * 99 / 100)]};
}

// The peer: the same forms in an in-memory SQLite table.
class SqlitePeer {
 public:
  explicit SqlitePeer(const zv::ZVSearcher::PersonList& persons) {
    sqlite3_open(":memory:", &db_);
    sqlite3_exec(db_,
                 "CREATE TABLE p(j TEXT, e TEXT, y TEXT, n TEXT, len INTEGER);"
                 "BEGIN;",
                 nullptr, nullptr, nullptr);
    sqlite3_stmt* ins = nullptr;
    sqlite3_prepare_v2(db_, "INSERT INTO p VALUES(?,?,?,?,?)", -1, &ins,
                       nullptr);
    for (const auto& p : persons) {
      const char* forms[] = {p->nameJianPin(), p->nameEnglish(),
                             p->namePinYin(), p->phoneNumber()};
      for (int i = 0; i < 4; ++i)
        sqlite3_bind_text(ins, i + 1, forms[i] ? forms[i] : "", -1,
                          SQLITE_STATIC);
      sqlite3_bind_int(ins, 5, p->nameLength());
      sqlite3_step(ins);
      sqlite3_reset(ins);
    }
    sqlite3_finalize(ins);
    sqlite3_exec(db_, "COMMIT;", nullptr, nullptr, nullptr);
    // Initials, word initials, full reading, number: the first form that
    // contains the key decides the class, as in the searcher.
    sqlite3_prepare_v2(
        db_,
        "SELECT rowid, c FROM (SELECT rowid, CASE "
        "WHEN instr(j,?1)>0 THEN (CASE WHEN instr(j,?1)=1 AND len=length(?1) "
        "THEN 0 WHEN instr(j,?1)-1>=len-1 THEN 6 ELSE 4 END) "
        "WHEN instr(e,?1)>0 THEN (CASE WHEN e=?1 THEN 1 ELSE 5 END) "
        "WHEN instr(y,?1)>0 THEN (CASE WHEN y=?1 THEN 2 ELSE 6 END) "
        "WHEN instr(n,?1)>0 THEN (CASE WHEN n=?1 THEN 3 ELSE 7 END) "
        "END AS c FROM p) WHERE c IS NOT NULL ORDER BY c, rowid",
        -1, &query_, nullptr);
  }
  ~SqlitePeer() {
    sqlite3_finalize(query_);
    sqlite3_close(db_);
  }
  size_t search(const std::string& key) {
    sqlite3_reset(query_);
    sqlite3_bind_text(query_, 1, key.c_str(), -1, SQLITE_STATIC);
    size_t rows = 0;
    while (sqlite3_step(query_) == SQLITE_ROW) ++rows;
    return rows;
  }

 private:
  sqlite3* db_ = nullptr;
  sqlite3_stmt* query_ = nullptr;
};

// Key sequences a user might type: prefixes (2..6 keys) of a random
// person's full reading or number.
std::vector<std::string> keySequences(const zv::ZVSearcher::PersonList& persons,
                                      int count) {
  std::mt19937 rng(7);
  std::vector<std::string> out;
  while (static_cast<int>(out.size()) < count) {
    const auto& p = persons[rng() % persons.size()];
    std::string form =
        rng() % 3 ? p->getNamePinYin() : p->getPhoneNumber().substr(3);
    if (form.size() < 6 || form.find('*') != std::string::npos) continue;
    out.push_back(form.substr(0, 6));
  }
  return out;
}

void runSize(int contacts, const std::string& table) {
  std::string root = (std::filesystem::temp_directory_path() /
                      ("zv-bench-search-" + std::to_string(contacts)))
                         .string();
  zv::DeviceImageOptions options;
  options.contacts = contacts;
  options.calls = 200;
  options.tableFile = table;
  zv::createDeviceImage(root, options);

  zv::platform::SimWorld world(root);
  auto& phone = world.launch("com.apple.mobilephone");
  phone.run([&] {
    auto s = zv::ZVSearcher::sharedInstance();
    const int reps = contacts >= 100000 ? 3 : 5;
    std::vector<double> db, cache;
    for (int i = 0; i < reps; ++i) {
      auto t = Clock::now();
      s->loadAddressBookDb();
      db.push_back(seconds(t));
      t = Clock::now();
      s->loadAddressBookCache();
      cache.push_back(seconds(t));
    }
    s->loadCallHistory();
    s->callocSearchs();
    const auto& persons = s->persons();
    size_t formBytes = 0;
    for (const auto& p : persons)
      formBytes += p->nameJianPinLength() + p->nameEnglishLength() +
                   p->namePinYinLength() + p->phoneNumberLength();

    SqlitePeer peer(persons);
    auto sequences = keySequences(persons, contacts >= 100000 ? 60 : 200);
    std::vector<double> first, narrow, peerFirst, peerNarrow;
    size_t ours = 0, theirs = 0;
    for (const auto& seq : sequences) {
      s->clearSearch();
      for (size_t n = 2; n <= seq.size(); ++n) {
        std::string key = seq.substr(0, n);
        auto t = Clock::now();
        size_t count = s->search(key);
        (n == 2 ? first : narrow).push_back(seconds(t));
        benchmark::DoNotOptimize(count);
        t = Clock::now();
        size_t rows = peer.search(key);
        (n == 2 ? peerFirst : peerNarrow).push_back(seconds(t));
        if (n == 2) {
          ours += count;
          theirs += rows;
        }
      }
    }
    Stats dbS = stats(db), cacheS = stats(cache);
    Stats f = stats(first), nw = stats(narrow);
    Stats pf = stats(peerFirst), pn = stats(peerNarrow);
    std::printf("\n%d contacts: %zu persons, %.1f MB of forms\n", contacts,
                persons.size(), formBytes / 1e6);
    std::printf("  load from database  %9.2f ms (median)\n", dbS.median * 1e3);
    std::printf("  load from cache     %9.2f ms (median)   %.1fx faster\n",
                cacheS.median * 1e3, dbS.median / cacheS.median);
    std::printf("  %-16s %10s %10s %10s %10s %7s %10s\n", "keystroke",
                "ours med", "ours p99", "sqlite med", "sqlite p99", "ratio",
                "GB/s ours");
    auto row = [&](const char* name, Stats o, Stats p, bool full) {
      std::printf(
          "  %-16s %8.3fms %8.3fms %8.3fms %8.3fms %6.1fx %10s\n", name,
          o.median * 1e3, o.p99 * 1e3, p.median * 1e3, p.p99 * 1e3,
          p.median / o.median,
          full ? std::to_string(formBytes / o.median / 1e9).substr(0, 5).c_str()
               : "-");
    };
    row("first key pair", f, pf, true);
    row("narrowing key", nw, pn, false);
    std::printf(
        "  first-pair matches: ours %zu (capped classes, plus rows), "
        "sqlite %zu\n",
        ours, theirs);
  });
  world.terminate(phone);
  std::filesystem::remove_all(root);
}

}  // namespace

int main(int argc, char** argv) {
  std::vector<int> sizes = {1000, 10000, 100000};
  if (argc > 1) {
    sizes.clear();
    for (int i = 1; i < argc; ++i) sizes.push_back(std::atoi(argv[i]));
  }
  std::string table = std::string(ZV_SOURCE_DIR) + "/data/table/PinYin.txt";
  for (int n : sizes) {
    if (n <= 0) {
      std::fprintf(stderr, "bench_search: bad size %s\n", argv[1]);
      return 1;
    }
    runSize(n, table);
  }
  return 0;
}
