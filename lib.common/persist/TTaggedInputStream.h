#pragma once

#include "core/CommonExport.h"
#include "core/EAutoDelete.h"
#include "diag/ECanException.h"
#include "persist/TInputMemoryStream.h"
#include "persist/TTaggedStream.h"
#include "text/TString.h"

class QByteArray;
class QString;
class QUuid;
class TNodeFinder;

// Whether opening a block checks the stored size and CRC-32.
enum EChecksum : int
{
    checksumOff = 0,
    checksumOn = 1,
};

// Reads a document of TTaggedOutputStream. Raw-tag documents are read in
// place; an XML document is first turned into a raw-tag tree (XmlConvert),
// so that every lookup works on the tree and only the typed reads know that
// the values are text.
//
// Every read has a default, returned when the stream holds no document or
// the key is missing: a missing key is no failure. Lookups remember the node
// they found, so reading in the order of writing costs one step a value.
//
// A document is checked once when it is opened: its header, its CRC-32 when
// asked, and its node tree, whose links, names and data must lie inside the
// block. One that fails is "damaged (or of the wrong format)"; the reads
// never leave the block whatever it holds.
class COMMON_EXPORT TTaggedInputStream : public TTaggedStream
{
public:
    using TGroupCallback = bool (*)(TTaggedInputStream* stream, char const* name, int count,
                                    unsigned long long user);

    // No document: every read gives its default.
    explicit TTaggedInputStream(EStreamMode mode, ECanException canException = canExceptionNo);
    // A document in memory. With autoDeleteOn the block is the stream's and
    // is freed with free_ex at the end or when opening fails. Mode 2 reads
    // XML text.
    TTaggedInputStream(EStreamMode mode, void const* data, int size, EChecksum checksum,
                       EAutoDelete autoDelete = autoDeleteOff, ECanException canException = canExceptionNo);
    // The array's bytes: read in place with autoDeleteOff (the array must
    // outlive the stream), copied with autoDeleteOn.
    TTaggedInputStream(EStreamMode mode, QByteArray const& data, EChecksum checksum,
                       EAutoDelete autoDelete = autoDeleteOff, ECanException canException = canExceptionNo);
    // A document read through QFile, for Qt resources (":/..."). The CRC is
    // always checked; text beginning with "<?xml" (after a UTF-8 mark) is
    // read as XML whatever the mode.
    TTaggedInputStream(EStreamMode mode, QString const& resourceName, ECanException canException = canExceptionNo);
    ~TTaggedInputStream() override;

    // The document
    bool IsValid() const { return m_input.IsValid(); }
    bool IsInitialized() const { return m_isInitialized; }
    unsigned int Size() const { return m_input.Size(); }
    unsigned char const* Start() const { return m_input.Start(); }
    TString<char> const& GetFileType() const { return m_fileType; }
    bool operator==(TTaggedInputStream const& other) const;
    bool operator!=(TTaggedInputStream const& other) const { return !(*this == other); }
    void SetAutoDelete(EAutoDelete autoDelete) { m_autoDelete = autoDelete; }
    bool XmlConvert() const { return m_xmlConvert; }
    // Kept for the caller; the stream does not act on it.
    bool ForceRecreate() const { return m_forceRecreate; }
    void SetForceRecreate(bool on) { m_forceRecreate = on; }
    TInputMemoryStream& Input() { return m_input; }

    // Navigation. MoveDown enters a child group (or a path "a/b", "/" being
    // the root); a failed step of a path leaves the steps before entered.
    // Groups and values are not told apart by name.
    bool MoveDown(char const* tag, int index = 0);
    void MoveUp() override;
    bool ExistKey(char const* tag, int index, int hintMode) const override;
    char const* GetFormattedTag(char const* tag) const override;
    // Puts the stream position on the data of the value and returns it, with
    // the node's offset in *node; null and 0 when absent.
    unsigned char const* MoveToDataStart(char const* tag, int index, int* node);
    // Calls back for each child group of the current group, from inside it,
    // with the running count; a false answer ends the walk. Values are
    // skipped.
    void ForEachGroup(TGroupCallback callback, unsigned long long user);

    // Numbers. In XML the text is read as a decimal (floating point values
    // as the Base64 of their bytes) and cut to the width of the type.
    bool GetValue(bool def, char const* tag, int index = 0);
    char GetValue(char def, char const* tag, int index = 0);
    signed char GetValue(signed char def, char const* tag, int index = 0);
    unsigned char GetValue(unsigned char def, char const* tag, int index = 0);
    short GetValue(short def, char const* tag, int index = 0);
    unsigned short GetValue(unsigned short def, char const* tag, int index = 0);
    int GetValue(int def, char const* tag, int index = 0);
    unsigned int GetValue(unsigned int def, char const* tag, int index = 0);
    long GetValue(long def, char const* tag, int index = 0);
    unsigned long GetValue(unsigned long def, char const* tag, int index = 0);
    long long GetValue(long long def, char const* tag, int index = 0);
    unsigned long long GetValue(unsigned long long def, char const* tag, int index = 0);
    float GetValue(float def, char const* tag, int index = 0);
    double GetValue(double def, char const* tag, int index = 0);

    // Narrow text (UTF-8 by convention). The twins read the same bytes.
    TString<char> GetValueA(char const* def, char const* tag, int index = 0);
    TString<char> GetValueUtf8(char const* def, char const* tag, int index = 0) { return GetValueA(def, tag, index); }
    TString<char> GetValueUtf(char const* def, char const* tag, int index = 0) { return GetValueA(def, tag, index); }
    TString<char> GetValueFromDbcs(char const* def, char const* tag, int index = 0)
    {
        return GetValueA(def, tag, index);
    }
    QByteArray GetValueBS(char const* def, char const* tag, int index = 0);
    QByteArray GetValueBS(QByteArray const& def, char const* tag, int index = 0);
    // Wide text: UTF-16 in raw documents, UTF-8 text in XML.
    TString<char16_t> GetValue(char16_t const* def, char const* tag, int index = 0);
    TString<char16_t> GetValueUtf(char16_t const* def, char const* tag, int index = 0)
    {
        return GetValue(def, tag, index);
    }
    TString<char16_t> GetValue(TString<char16_t> const& def, char const* tag, int index = 0);
    // Stored as UTF-8.
    QString GetValue(QString const& def, char const* tag, int index = 0);
    QUuid GetValue(QUuid const& def, char const* tag, int index = 0);
    // Narrow text has GetValueA: without this a literal default would pick
    // the bool form.
    bool GetValue(char const* def, char const* tag, int index = 0) = delete;
    // For documents older than wide strings: wideTag as wide text, else
    // oldTag as narrow text, else the empty string (def only when there is
    // no document).
    TString<char16_t> GetValue(char16_t const* def, char const* wideTag, char const* oldTag, int index);
    // The older generation kept text in the local 8-bit code page under
    // oldTag; *usedOld tells which tag was read.
    TString<char16_t> GetStringCompat(char const* def, char const* oldTag, char const* newTag, int index,
                                      bool* usedOld);
    QString GetStringCompat(QString const& def, char const* oldTag, char const* newTag, int index, bool* usedOld);

    // Opaque bytes. out receives at most size bytes; the result is the size
    // (in a plain document the stored length). Base64 in XML.
    int GetBinary(void* out, void const* def, int size, char const* tag, int index = 0);
    QByteArray GetBinary(QByteArray const& def, char const* tag, int index = 0);
    // The stored size; the stream position stays.
    int GetBinarySize(char const* tag, int index = 0);

protected:
    // Reads the header at offset: byte order, size and CRC-32 when checksum
    // is on, the file type; in mode 1 the root and the check of the tree.
    bool InitTaggedInputStream(int offset, EChecksum checksum);
    // Turns the links of a document of the other byte order around.
    void SwapNodeValues(int node);

private:
    void Open(void const* data, unsigned int size, EChecksum checksum);
    // FindNode, with long walks answered by the name index.
    int Search(char const* tag, int index, int hintMode) const;
    int Walk(int node, char const* name, int length, unsigned int limit, bool* more) const;
    int SearchIndexed(int start, bool wrap, char const* name, int length) const;
    void ConvertFromXml();
    void FailDamaged();
    void ReleaseBlock();
    bool CheckTree() const;
    template <class T>
    T GetNumber(T def, char const* tag, int index);
    long long ReadDecimal();
    int NodeDataSize(int node) const;
    unsigned int BinaryRoom(char const* tag, int index) const;
    bool ReadsPastEnd(unsigned int bytes) const { return m_input.GetSizeLeft() < bytes; }

    TInputMemoryStream m_input;
    mutable TNodeFinder* m_finder;
    TString<char> m_fileType;
    // Names the document in the damage message.
    TString<char16_t> m_sourceName;
    mutable TString<char> m_formattedTag;
    EAutoDelete m_autoDelete;
    ECanException m_canException;
    bool m_forceRecreate;
    bool m_xmlConvert;
    bool m_isInitialized;
};

// Remembers the current group and the search hint and puts them back on
// leaving, whatever happened.
class COMMON_EXPORT TScopedSearchPlace
{
public:
    explicit TScopedSearchPlace(TTaggedInputStream& stream) : m_stream(stream), m_group(stream.GetCurrentGroup())
    {
        stream.GetSearchHint(&m_lastFound, &m_lastGroup);
    }
    ~TScopedSearchPlace()
    {
        m_stream.SetCurrentGroup(m_group);
        m_stream.SetSearchHint(m_lastFound, m_lastGroup);
    }
    TScopedSearchPlace(TScopedSearchPlace const&) = delete;
    TScopedSearchPlace& operator=(TScopedSearchPlace const&) = delete;

private:
    TTaggedInputStream& m_stream;
    int m_group;
    int m_lastFound;
    int m_lastGroup;
};

// Enters a group for as long as it lives: the frame of every RestoreState
// of a composite value.
class COMMON_EXPORT TScopedInputGroup : private TScopedSearchPlace
{
public:
    TScopedInputGroup(TTaggedInputStream& stream, char const* tag, int index)
        : TScopedSearchPlace(stream), m_found(stream.MoveDown(tag, index))
    {
    }

    bool Found() const { return m_found; }

private:
    bool m_found;
};
