// How long a table dump takes and how that grows with its rows: the real daemon dumps a full table,
// named once to 400 times in one request, against writing the same bytes plainly.
#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <functional>
#include <sstream>

#include "dictionary/records.h"
#include "tests/items.h"
#include "tests/namespaces.h"
#include "tests/system/daemon_process.h"

namespace kobd::test
{
namespace
{
constexpr int kRuns = 7;                           // of which the fastest counts
constexpr size_t kPlainWrite = size_t{32} * 1024;  // bytes, as the daemon gathers them

double Milliseconds(const std::function<void()>& work)
{
    const auto start = std::chrono::steady_clock::now();
    work();
    return std::chrono::duration<double, std::milli>(std::chrono::steady_clock::now() - start).count();
}

// The largest table that clients can fill with any values.
const TableDef& LargestTable()
{
    const auto bytes = [](const TableDef& table)
    {
        const TableOps& ops = *table.ops;
        const bool fillable = ops.add != nullptr && ops.set != nullptr && ops.setPPath != nullptr && !ops.validate;
        return fillable ? size_t{table.max_rows} * table.row_size : 0;
    };
    return *std::max_element(kTables.begin(), kTables.end(),
                             [&](const TableDef& a, const TableDef& b) { return bytes(a) < bytes(b); });
}

void Fill(const TableDef& table)
{
    std::string changes;
    while (true)
    {
        const Answer answer = Request(kReqTableAdd, {{kTagTableName, table.name}});
        if (answer.result != 0) break;
        changes += Row(table.name, std::stoi(answer.texts.at(0)));
        for (uint32_t i = 0; i < table.column_count; ++i)
            if (table.columns[i].type == VT_STRING)
                changes += Column(table.columns[i].name, std::string(table.columns[i].length - 1, 'x'));
    }
    std::ofstream("/tmp/changes", std::ios::binary) << changes;
    if (Request(kReqTableSet, {{kTagValue, "/tmp/changes"}}).result != 0) abort();
}

std::string Dump(const std::string& request, double* milliseconds)
{
    Answer answer;
    *milliseconds = Milliseconds([&] { answer = RequestItems(kReqTableDump, request, 60000); });
    if (answer.result != 0) abort();
    std::ostringstream bytes;
    bytes << std::ifstream(answer.texts.at(0), std::ios::binary).rdbuf();
    unlink(answer.texts.at(0).c_str());
    return bytes.str();
}

double WritePlainly(const std::string& bytes)
{
    const double milliseconds = Milliseconds(
        [&]
        {
            const int file = open("/tmp/plain", O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0600);
            for (size_t at = 0; at < bytes.size(); at += kPlainWrite)
                if (write(file, bytes.data() + at, std::min(kPlainWrite, bytes.size() - at)) < 0) abort();
            close(file);
        });
    unlink("/tmp/plain");
    return milliseconds;
}

void Measure(const TableDef& table, int times)
{
    std::string request;
    for (int i = 0; i < times; ++i) request += TextItem(kTagTableName, table.name);
    double dump = 1e9, plain = 1e9;
    size_t size = 0;
    for (int run = 0; run < kRuns; ++run)
    {
        double milliseconds = 0;
        const std::string bytes = Dump(request, &milliseconds);
        size = bytes.size();
        dump = std::min(dump, milliseconds);
        plain = std::min(plain, WritePlainly(bytes));
    }
    const unsigned rows = table.max_rows * static_cast<unsigned>(times);
    printf("%7u rows %10zu bytes  dump %9.2f ms  plain write %9.2f ms  ratio %5.2f  %6.2f us a row\n", rows, size, dump,
           plain, dump / plain, dump * 1000 / rows);
}

int Run()
{
    EnterOwnNamespaces();
    if (!own_namespaces) return 1;
    DaemonProcess daemon("/tmp/state");
    if (!daemon.Start()) return 1;
    const TableDef& table = LargestTable();
    Fill(table);
    printf("%s, %u rows\n", table.name, table.max_rows);
    for (const int times : {1, 10, 100, 400}) Measure(table, times);
    return 0;
}
}  // namespace
}  // namespace kobd::test

int main() { return kobd::test::Run(); }
