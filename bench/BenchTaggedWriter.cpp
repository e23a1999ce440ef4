// A document of 100,000 values of mixed types in nested groups of 10 to 100
// values: the tagged writer in raw tags beside QCborStreamWriter writing the
// same tree as nested maps, and in XML beside QXmlStreamWriter.

#include "TaggedDocumentPlan.h"

#include <QByteArray>
#include <QCborStreamWriter>
#include <QString>
#include <QXmlStreamWriter>
#include <benchmark/benchmark.h>

#include <cstdint>
#include <vector>

namespace {

using namespace TaggedBench;

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
        p.steps = MakeSteps(int(p.texts.size()), [&p](int group) {
            p.xmlGroupNames.push_back(group == 0 ? QStringLiteral("group") : "group-" + QString::number(group));
            p.rawGroupNames.push_back(group == 0 ? QByteArray("group") : "group" + QByteArray::number(group));
        });
        return p;
    }();
    return plan;
}

void TaggedRawCommon(benchmark::State& state)
{
    TPlan const& plan = Plan();
    for (auto _ : state) {
        TTaggedOutputStream stream(streamModeRawTags, "Bench");
        WriteSteps(stream, plan.steps, plan.texts);
        benchmark::DoNotOptimize(stream.CloseWriting());
    }
    state.SetItemsProcessed(int64_t(state.iterations()) * kValues);
}

void TaggedXmlCommon(benchmark::State& state)
{
    TPlan const& plan = Plan();
    for (auto _ : state) {
        TTaggedOutputStream stream(streamModeXml, "Bench");
        WriteSteps(stream, plan.steps, plan.texts);
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
