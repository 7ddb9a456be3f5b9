#pragma once

#include "platform/propertylist/PropertyListFiles.h"
#include "platform/propertylist/PropertyListTables.h"
#include "platform/propertylist/XMLPropertyListInput.h"

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace orvane::propertylist {

/// Reads one XML property list in a single pass over a moving window. The elements that are open stand on a stack of
/// their own, and the values of open containers on another, so nesting costs memory, not the thread's stack. The common
/// shape of a file (plain tags, plain ASCII text) has a fast way through; everything else (attributes, comments, CDATA,
/// references, other alphabets, ends of the window) a slower one beside it.
class XMLPropertyListReader {
public:
    /// Reads `input`, which must live as long as the reader, from where it stands.
    explicit XMLPropertyListReader(XMLPropertyListInput &input);
    /// The document; nothing when it cannot be read. Call once. `report` gets sites and reason.
    [[nodiscard]] std::optional<PropertyList> read(PropertyListReport &report);

private:
    /// Bytes enough to know any tag, "<![CDATA[" or a reference by its beginning.
    static constexpr std::size_t Lookahead = 32;

    enum class Element : std::uint8_t { None, Plist, Dictionary, Array, Key, String, Integer, Real, Date, Data, True, False };
    struct Tag {
        Element element = Element::None;
        bool empty = false;
    };
    struct Container {
        bool dictionary = false;
        Key *key = nullptr; ///< read, its value is awaited
        std::size_t firstPending = 0;
    };

    // Structure (XMLPropertyListReader.cpp)
    bool _readDocument();
    bool _readRoot();
    bool _readEpilogue(bool plist);
    bool _readContents();
    bool _readStart();
    bool _openContainer(const Tag &tag);
    bool _closeContainer();
    bool _readKey(const Tag &tag);
    bool _readScalar(const Tag &tag);
    bool _add(const PropertyListValue &value);
    [[nodiscard]] PropertyListValue _closedDictionary(const Container &container);
    bool _mayHaveValue();
    bool _scalarFromText(Element element, std::string_view text, PropertyListValue &value);
    bool _isFull(std::size_t count);
    bool _finishContainer();
    void _noteValueBegin();
    void _noteValueEnd();

    // The fast way (XMLPropertyListFastPath.cpp)
    void _readPlainElements();
    bool _readPlainKey(Container &container);
    bool _readPlainValue(Container &container);
    bool _closePlainContainer(const Container &container);

    // The beginning of a file (XMLPropertyListProlog.cpp)
    bool _readDeclaration();
    bool _useEncoding(std::string_view name, bool isUTF16, bool hasMark);
    bool _decodeRest(PropertyListEncoding encoding);
    bool _readDoctype();
    bool _readSubset();

    // Text and markup (XMLPropertyListMarkup.cpp)
    bool _skipMisc();
    bool _skipBlanks();
    bool _skipUntil(std::string_view ending, const char *what);
    bool _skipComment();
    bool _skipInstruction();
    bool _skipQuoted(char32_t quote, bool insideTag);
    bool _readTag(Tag &tag);
    bool _readAttributes(Tag &tag);
    bool _readAttribute();
    bool _readClosingTag(Element element);
    bool _readText(Element element, std::string_view &text);
    bool _readTextSlowly(Element element);
    bool _readTextMarkup(Element element, bool &closed);
    bool _readCDATA();
    bool _readReference();
    bool _appendRawCharacter();
    [[nodiscard]] bool _peekCharacter(char32_t &code, std::size_t &length);
    bool _nextCharacter(char32_t &code);
    [[nodiscard]] bool _startsWith(std::string_view text) const noexcept {
        return std::memcmp(_input->cursor, text.data(), text.size()) == 0; // the window's padding covers its end
    }
    [[nodiscard]] Element _elementAtCursor(std::size_t &length) const noexcept;
    bool _fail(std::string reason);

    XMLPropertyListInput *_input;
    std::unique_ptr<XMLPropertyListInput> _decodedInput;
    std::string _decoded; ///< the whole text, when the file is not in UTF-8
    PropertyListEncoding _encoding = PropertyListEncoding::UTF8;

    std::shared_ptr<PropertyListArena> _arena;
    KeyTable _keys;
    TextStore _texts;
    ContainerMaker _maker;
    std::vector<Container> _containers;
    std::vector<PendingValue> _pending;
    Key *_lastKey = nullptr; ///< read by the fast way
    std::string _scratch;
    PropertyListValue _root;

    bool _wantsSites = false;
    PropertyListSites _sites;
    std::uint64_t _tagBegin = 0; ///< of the start tag read last; kept up only near the root
    std::string _why;
    std::uint64_t _errorOffset = 0;
};

} // namespace orvane::propertylist
