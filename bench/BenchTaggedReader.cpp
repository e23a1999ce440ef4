// The document of the tagged writer's benchmark (100,000 values of mixed
// types in nested groups of 10 to 100 values), opened and read back value by
// value by name: the raw-tag reader beside QCborValue::fromCbor and map
// look-ups of the same tree, in writing order and in reverse order within
// each group, and the XML reader beside QXmlStreamReader over the same text.

#include "TaggedDocumentPlan.h"

#include "persist/TTaggedInputStream.h"

#include <QByteArray>
#include <QCborMap>
#include <QCborStreamWriter>
#include <QCborValue>
#include <QString>
#include <QXmlStreamReader>
#include <benchmark/benchmark.h>

#include <cstdint>
#include <cstring>
#include <vector>

namespace {

using namespace TaggedBench;

// The children of each group in reverse, a nested group moving as a whole.
size_t Reverse(std::vector<TStep> const& steps, size_t at, std::vector<TStep>& out)
{
    out.push_back(steps[at++]);
    std::vector<std::vector<TStep>> children;
    while (steps[at].kind != eUp) {
        std::vector<TStep> child;
        if (steps[at].kind == eDown)
            at = Reverse(steps, at, child);
        else
            child.push_back(steps[at++]);
        children.push_back(child);
    }
    for (auto it = children.rbegin(); it != children.rend(); ++it)
        out.insert(out.end(), it->begin(), it->end());
    out.push_back(steps[at]);
    return at + 1;
}

struct TDocuments
{
    std::vector<TStep> steps;
    std::vector<TStep> reversed;
    std::vector<QByteArray> texts;
    std::vector<QByteArray> valueNames;
    std::vector<QByteArray> groupNames;
    std::vector<QByteArray> innerNames;
    QByteArray raw;
    QByteArray xml;
    QByteArray cbor;
};

QByteArray const& GroupName(TDocuments const& d, TStep const& step)
{
    return step.value == 0 ? d.groupNames[size_t(step.index)] : d.innerNames[size_t(step.index)];
}

QByteArray WriteCbor(TDocuments const& d)
{
    QByteArray bytes;
    QCborStreamWriter writer(&bytes);
    writer.startMap();
    for (TStep const& step : d.steps) {
        if (step.kind == eUp) {
            writer.endMap();
            continue;
        }
        QByteArray const& name = step.kind == eDown ? GroupName(d, step) : d.valueNames[size_t(step.index)];
        writer.append(QLatin1String(name.constData(), name.size()));
        switch (step.kind) {
        case eDown:
            writer.startMap();
            break;
        case eInt:
            writer.append(qint64(step.value));
            break;
        case eDouble:
            writer.append(DoubleOf(step.value));
            break;
        case eText:
            writer.append(QLatin1String(d.texts[size_t(step.value)].constData(), d.texts[size_t(step.value)].size()));
            break;
        case eBool:
            writer.append((step.value & 1) != 0);
            break;
        case eInt64:
            writer.append(qint64(step.value) << 20);
            break;
        case eUp:
            break;
        }
    }
    writer.endMap();
    return bytes;
}

TDocuments const& Documents()
{
    static TDocuments const documents = [] {
        TDocuments d;
        for (int n = 0; n < 64; ++n)
            d.texts.push_back("item " + QByteArray::number(n * 7919) + " of the project");
        for (int n = 0; n < 200; ++n) {
            d.valueNames.push_back(n == 0 ? QByteArray("v") : "v" + QByteArray::number(n));
            d.innerNames.push_back(n == 0 ? QByteArray("inner") : "inner" + QByteArray::number(n));
        }
        d.steps = MakeSteps(int(d.texts.size()), [&d](int group) {
            d.groupNames.push_back(group == 0 ? QByteArray("group") : "group" + QByteArray::number(group));
        });
        for (size_t at = 0; at < d.steps.size();)
            at = Reverse(d.steps, at, d.reversed);
        TTaggedOutputStream raw(streamModeRawTags, "Bench");
        WriteSteps(raw, d.steps, d.texts);
        d.raw = raw.GetAsByteArray();
        TTaggedOutputStream xml(streamModeXml, "Bench");
        WriteSteps(xml, d.steps, d.texts);
        d.xml = xml.GetAsByteArray();
        d.cbor = WriteCbor(d);
        return d;
    }();
    return documents;
}

// What every reader adds up, so that no read can be left out.
struct TSum
{
    long long numbers = 0;
    double reals = 0;
    long long textBytes = 0;
};

// Groups are read as objects read themselves: the group and the search
// hint are put back on the way out, so the next sibling is one step away.
void ReadCommon(TTaggedInputStream& in, std::vector<TStep> const& steps, TSum& sum)
{
    struct TFrame
    {
        int group;
        int lastFound;
        int lastGroup;
    };
    TFrame frames[4];
    int depth = 0;
    for (TStep const& step : steps) {
        switch (step.kind) {
        case eDown: {
            TFrame& frame = frames[depth++];
            frame.group = in.GetCurrentGroup();
            in.GetSearchHint(&frame.lastFound, &frame.lastGroup);
            in.MoveDown(step.value == 0 ? "group" : "inner", step.index);
            break;
        }
        case eUp: {
            TFrame const& frame = frames[--depth];
            in.SetCurrentGroup(frame.group);
            in.SetSearchHint(frame.lastFound, frame.lastGroup);
            break;
        }
        case eInt:
            sum.numbers += in.GetValue(0, "v", step.index);
            break;
        case eDouble:
            sum.reals += in.GetValue(0.0, "v", step.index);
            break;
        case eText:
            sum.textBytes += in.GetValueA("", "v", step.index).GetLength();
            break;
        case eBool:
            sum.numbers += in.GetValue(false, "v", step.index) ? 1 : 0;
            break;
        case eInt64:
            sum.numbers += in.GetValue(0LL, "v", step.index);
            break;
        }
    }
}

void ReadCbor(QCborMap const& root, TDocuments const& d, std::vector<TStep> const& steps, TSum& sum)
{
    std::vector<QCborMap> maps{root};
    for (TStep const& step : steps) {
        if (step.kind == eUp) {
            maps.pop_back();
            continue;
        }
        QByteArray const& name = step.kind == eDown ? GroupName(d, step) : d.valueNames[size_t(step.index)];
        QCborValue const value = maps.back().value(QLatin1String(name.constData(), name.size()));
        switch (step.kind) {
        case eDown:
            maps.push_back(value.toMap());
            break;
        case eInt:
        case eInt64:
            sum.numbers += value.toInteger();
            break;
        case eDouble:
            sum.reals += value.toDouble();
            break;
        case eText:
            sum.textBytes += value.toString().size();
            break;
        case eBool:
            sum.numbers += value.toBool() ? 1 : 0;
            break;
        case eUp:
            break;
        }
    }
}

void Check(benchmark::State& state, TSum const& sum, TSum const& expected)
{
    if (sum.numbers != expected.numbers || sum.reals != expected.reals || sum.textBytes != expected.textBytes)
        state.SkipWithError("the values read differ from the values written");
}

TSum const& Expected()
{
    static TSum const sum = [] {
        TDocuments const& d = Documents();
        TSum s;
        for (TStep const& step : d.steps) {
            switch (step.kind) {
            case eInt:
                s.numbers += step.value;
                break;
            case eDouble:
                s.reals += DoubleOf(step.value);
                break;
            case eText:
                s.textBytes += d.texts[size_t(step.value)].size();
                break;
            case eBool:
                s.numbers += step.value & 1;
                break;
            case eInt64:
                s.numbers += static_cast<long long>(step.value) << 20;
                break;
            default:
                break;
            }
        }
        return s;
    }();
    return sum;
}

template <bool reverse>
void TaggedReadCommon(benchmark::State& state)
{
    TDocuments const& d = Documents();
    TSum sum;
    for (auto _ : state) {
        sum = TSum();
        TTaggedInputStream in(streamModeRawTags, d.raw, checksumOn);
        ReadCommon(in, reverse ? d.reversed : d.steps, sum);
        benchmark::DoNotOptimize(sum);
    }
    if (!reverse)
        Check(state, sum, Expected());
    state.SetItemsProcessed(int64_t(state.iterations()) * kValues);
}

template <bool reverse>
void TaggedReadCbor(benchmark::State& state)
{
    TDocuments const& d = Documents();
    TSum sum;
    for (auto _ : state) {
        sum = TSum();
        QCborValue const root = QCborValue::fromCbor(d.cbor);
        ReadCbor(root.toMap(), d, reverse ? d.reversed : d.steps, sum);
        benchmark::DoNotOptimize(sum);
    }
    state.SetItemsProcessed(int64_t(state.iterations()) * kValues);
}

void TaggedReadXmlCommon(benchmark::State& state)
{
    TDocuments const& d = Documents();
    TSum sum;
    for (auto _ : state) {
        sum = TSum();
        TTaggedInputStream in(streamModeXml, d.xml, checksumOn);
        ReadCommon(in, d.steps, sum);
        benchmark::DoNotOptimize(sum);
    }
    Check(state, sum, Expected());
    state.SetItemsProcessed(int64_t(state.iterations()) * kValues);
}

// The same text with the same types: numbers in decimal, floating point
// values as the Base64 of their bytes.
void TaggedReadXmlQt(benchmark::State& state)
{
    TDocuments const& d = Documents();
    TSum sum;
    for (auto _ : state) {
        sum = TSum();
        QXmlStreamReader reader(d.xml);
        reader.readNextStartElement();
        for (TStep const& step : d.steps) {
            switch (step.kind) {
            case eDown:
                reader.readNextStartElement();
                break;
            case eUp:
                while (reader.readNextStartElement())
                    reader.skipCurrentElement();
                break;
            default: {
                reader.readNextStartElement();
                QString const text = reader.readElementText();
                if (step.kind == eDouble) {
                    QByteArray const bytes = QByteArray::fromBase64(text.toLatin1());
                    double value = 0;
                    std::memcpy(&value, bytes.constData(), bytes.size() == 8 ? 8 : 0);
                    sum.reals += value;
                } else if (step.kind == eText) {
                    sum.textBytes += text.size();
                } else if (step.kind == eBool) {
                    sum.numbers += text.toInt() != 0 ? 1 : 0;
                } else {
                    sum.numbers += text.toLongLong();
                }
            }
            }
        }
        benchmark::DoNotOptimize(sum);
    }
    Check(state, sum, Expected());
    state.SetItemsProcessed(int64_t(state.iterations()) * kValues);
}

} // namespace

BENCHMARK(TaggedReadCommon<false>)->Name("TaggedRead/common")->Arg(kValues)->Unit(benchmark::kMillisecond);
BENCHMARK(TaggedReadCbor<false>)->Name("TaggedRead/qcbor")->Arg(kValues)->Unit(benchmark::kMillisecond);
BENCHMARK(TaggedReadCommon<true>)->Name("TaggedReadReverse/common")->Arg(kValues)->Unit(benchmark::kMillisecond);
BENCHMARK(TaggedReadCbor<true>)->Name("TaggedReadReverse/qcbor")->Arg(kValues)->Unit(benchmark::kMillisecond);
BENCHMARK(TaggedReadXmlCommon)->Name("TaggedReadXml/common")->Arg(kValues)->Unit(benchmark::kMillisecond);
BENCHMARK(TaggedReadXmlQt)->Name("TaggedReadXml/qxml")->Arg(kValues)->Unit(benchmark::kMillisecond);
