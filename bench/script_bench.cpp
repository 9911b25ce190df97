#include <benchmark/benchmark.h>

#include <QFile>
#include <QHash>
#include <QJsonDocument>
#include <QJsonObject>
#include <QStringList>

#include "ui/script_handler.h"

namespace {

QStringList keysOf(const QString& scriptFile) {
    QFile file(scriptFile);
    if (!file.open(QIODevice::ReadOnly))
        qFatal("cannot read %s", qUtf8Printable(scriptFile));
    const QJsonObject script = QJsonDocument::fromJson(file.readAll()).object();
    return script.value(QLatin1String("Scripts")).toObject().keys();
}

/// Every key in turn, so that neither side lives off one warm cache line.
template <typename LookUp>
void lookUpEach(benchmark::State& state, const QStringList& keys, LookUp lookUp) {
    int next = 0;
    for (auto _ : state) {
        benchmark::DoNotOptimize(lookUp(keys.at(next)));
        next = next + 1 < keys.size() ? next + 1 : 0;
    }
}

}  // namespace

int main(int argc, char** argv) {
    qputenv("ZEL_ROOT", ZEL_STAGED_ROOT);
    ScriptHandler scripts(nullptr, QStringLiteral("/zel1/script_list.json"));
    scripts.setScript(scripts.getLanguageList().value(0));
    const QString file = QStringLiteral(ZEL_STAGED_ROOT "/zel1/script/korean.json");
    const QStringList keys = keysOf(file);
    // With keys of its own: those that are asked for share no memory with either side's.
    QHash<QString, ScriptHandler::Script> entries;
    for (const QString& key : keysOf(file))
        entries.insert(key, scripts.getScript(key));

    benchmark::RegisterBenchmark("hashValue", [&](benchmark::State& state) {
        lookUpEach(state, keys, [&entries](const QString& key) { return entries.value(key); });
    });
    benchmark::RegisterBenchmark("getScript", [&](benchmark::State& state) {
        lookUpEach(state, keys, [&scripts](const QString& key) { return scripts.getScript(key); });
    });
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
}
