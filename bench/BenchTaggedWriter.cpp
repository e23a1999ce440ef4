// A document of 100,000 values of mixed types in nested groups of 10 to 100
// values: the tagged writer in raw tags beside QCborStreamWriter writing the
// same tree as nested maps, and in XML beside QXmlStreamWriter.

#include "math/TRandomizer.h"
#include "persist/TTaggedOutputStream.h"

#include <QByteArray>
#include <QCborStreamWriter>
#include <QString>
#include <QXmlStreamWriter>
#include <benchmark/benchmark.h>

#include <cstdint>
#include <vector>

namespace {

constexpr int kValues = 100000;

enum EStep : int
{
    eDown,
    eUp,
    eInt,
    eDouble,
    eText,
    eBool,
    eInt64,
};

struct TStep
{
    EStep kind;
    int index;
    int value; // the number, or the text's place in the pool
};

struct TPlan
{
    std::vector<TStep> steps;
    std::vector<QByteArray> texts;
    std::vector<QString> qTexts;
    // The peers get their names made in advance; the library spells its
    // own from tag and index on every call.
    std::vector<QByteArray> rawNames;
    std::vector<QByteArray> rawGroupNames;
    std::vector<QByteArray> rawInnerNames;
    std::vector<QString> xmlValueNames;
    std::vector<QString> xmlGroupNames;
    std::vector<QString> xmlInnerNames;
};

void AddGroup(TPlan& plan, TRandomizer& random, int& values, int depth, int index)
{
    plan.steps.push_back({eDown, index, depth});
    int const count = 10 + random.Get(91);
    for (int n = 0; n < count && values < kValues; ++n) {
        if (depth == 0 && n == count / 2 && random.Get(2) == 0)
            AddGroup(plan, random, values, 1, n);
        // Objects write their fields in a fixed order: the types repeat.
        EStep const kind = EStep(eInt + n % 5);
        plan.steps.push_back({kind, n, kind == eText ? random.Get(int(plan.texts.size())) : int(random.Next32())});
        ++values;
    }
    plan.steps.push_back({eUp, 0, 0});
}

TPlan const& Plan()
{
    static TPlan const plan = [] {
        TPlan p;
        for (int n = 0; n < 64; ++n) {
            QByteArray text = "item " + QByteArray::number(n * 7919) + " of the project";
            p.texts.push_back(text);
            p.qTexts.push_back(QString::fromLatin1(text));
        }
        for (int n = 0; n < 200; ++n) {
            p.rawNames.push_back(n == 0 ? QByteArray("v") : "v" + QByteArray::number(n));
            p.xmlValueNames.push_back(n == 0 ? QStringLiteral("v") : "v-" + QString::number(n));
            p.xmlInnerNames.push_back(n == 0 ? QStringLiteral("inner") : "inner-" + QString::number(n));
            p.rawInnerNames.push_back(n == 0 ? QByteArray("inner") : "inner" + QByteArray::number(n));
        }
        TRandomizer random(2024);
        int values = 0;
        for (int group = 0; values < kValues; ++group) {
            p.xmlGroupNames.push_back(group == 0 ? QStringLiteral("group") : "group-" + QString::number(group));
            p.rawGroupNames.push_back(group == 0 ? QByteArray("group") : "group" + QByteArray::number(group));
            AddGroup(p, random, values, 0, group);
        }
        return p;
    }();
    return plan;
}

double DoubleOf(int value)
{
    return value * 0.001;
}

void WriteCommon(TTaggedOutputStream& stream, TPlan const& plan)
{
    for (TStep const& step : plan.steps) {
        switch (step.kind) {
        case eDown:
            stream.MoveDown(step.value == 0 ? "group" : "inner", step.index);
            break;
        case eUp:
            stream.MoveUp();
            break;
        case eInt:
            stream.SetValue(step.value, "v", step.index);
            break;
        case eDouble:
            stream.SetValue(DoubleOf(step.value), "v", step.index);
            break;
        case eText:
            stream.SetValue(plan.texts[size_t(step.value)].constData(), "v", step.index);
            break;
        case eBool:
            stream.SetValue((step.value & 1) != 0, "v", step.index);
            break;
        case eInt64:
            stream.SetValue(static_cast<long long>(step.value) << 20, "v", step.index);
            break;
        }
    }
}

void TaggedRawCommon(benchmark::State& state)
{
    TPlan const& plan = Plan();
    for (auto _ : state) {
        TTaggedOutputStream stream(streamModeRawTags, "Bench");
        WriteCommon(stream, plan);
        benchmark::DoNotOptimize(stream.CloseWriting());
    }
    state.SetItemsProcessed(int64_t(state.iterations()) * kValues);
}

void TaggedXmlCommon(benchmark::State& state)
{
    TPlan const& plan = Plan();
    for (auto _ : state) {
        TTaggedOutputStream stream(streamModeXml, "Bench");
        WriteCommon(stream, plan);
        benchmark::DoNotOptimize(stream.CloseWriting());
    }
    state.SetItemsProcessed(int64_t(state.iterations()) * kValues);
}

void TaggedRawCbor(benchmark::State& state)
{
    TPlan const& plan = Plan();
    for (auto _ : state) {
        QByteArray bytes;
        QCborStreamWriter writer(&bytes);
        writer.startMap();
        for (TStep const& step : plan.steps) {
            QByteArray const& name = step.kind != eDown ? plan.rawNames[size_t(step.index % 200)]
                                     : step.value == 0       ? plan.rawGroupNames[size_t(step.index)]
                                                             : plan.rawInnerNames[size_t(step.index % 200)];
            switch (step.kind) {
            case eDown:
                writer.append(QLatin1String(name.constData(), name.size()));
                writer.startMap();
                break;
            case eUp:
                writer.endMap();
                break;
            case eInt:
                writer.append(QLatin1String(name.constData(), name.size()));
                writer.append(qint64(step.value));
                break;
            case eDouble:
                writer.append(QLatin1String(name.constData(), name.size()));
                writer.append(DoubleOf(step.value));
                break;
            case eText: {
                QByteArray const& text = plan.texts[size_t(step.value)];
                writer.append(QLatin1String(name.constData(), name.size()));
                writer.append(QLatin1String(text.constData(), text.size()));
                break;
            }
            case eBool:
                writer.append(QLatin1String(name.constData(), name.size()));
                writer.append((step.value & 1) != 0);
                break;
            case eInt64:
                writer.append(QLatin1String(name.constData(), name.size()));
                writer.append(qint64(step.value) << 20);
                break;
            }
        }
        writer.endMap();
        benchmark::DoNotOptimize(bytes.size());
    }
    state.SetItemsProcessed(int64_t(state.iterations()) * kValues);
}

void TaggedXmlQt(benchmark::State& state)
{
    TPlan const& plan = Plan();
    for (auto _ : state) {
        QByteArray bytes;
        QXmlStreamWriter writer(&bytes);
        writer.setAutoFormatting(true);
        writer.setAutoFormattingIndent(-1);
        writer.writeStartDocument();
        writer.writeStartElement(QStringLiteral("Bench"));
        for (TStep const& step : plan.steps) {
            QString const& name = plan.xmlValueNames[size_t(step.index % 200)];
            switch (step.kind) {
            case eDown:
                writer.writeStartElement(step.value == 0 ? plan.xmlGroupNames[size_t(step.index)]
                                                         : plan.xmlInnerNames[size_t(step.index % 200)]);
                break;
            case eUp:
                writer.writeEndElement();
                break;
            case eInt:
                writer.writeTextElement(name, QString::number(step.value));
                break;
            case eDouble:
                writer.writeTextElement(name, QString::number(DoubleOf(step.value)));
                break;
            case eText:
                writer.writeTextElement(name, plan.qTexts[size_t(step.value)]);
                break;
            case eBool:
                writer.writeTextElement(name, (step.value & 1) ? QStringLiteral("1") : QStringLiteral("0"));
                break;
            case eInt64:
                writer.writeTextElement(name, QString::number(qint64(step.value) << 20));
                break;
            }
        }
        writer.writeEndElement();
        writer.writeEndDocument();
        benchmark::DoNotOptimize(bytes.size());
    }
    state.SetItemsProcessed(int64_t(state.iterations()) * kValues);
}

} // namespace

BENCHMARK(TaggedRawCommon)->Name("TaggedRaw/common")->Arg(kValues)->Unit(benchmark::kMillisecond);
BENCHMARK(TaggedRawCbor)->Name("TaggedRaw/qcbor")->Arg(kValues)->Unit(benchmark::kMillisecond);
BENCHMARK(TaggedXmlCommon)->Name("TaggedXml/common")->Arg(kValues)->Unit(benchmark::kMillisecond);
BENCHMARK(TaggedXmlQt)->Name("TaggedXml/qxml")->Arg(kValues)->Unit(benchmark::kMillisecond);
