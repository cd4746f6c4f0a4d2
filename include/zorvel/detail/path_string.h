#pragma once

#include <zorvel/paths.h>

#include <zorvel/detail/path_component.h>
#include <zorvel/detail/whole_text.h>

// ---------------------------------------------------------------------------
// zvWellFormedPathNormalizer
// ---------------------------------------------------------------------------

template <class P>
void zvWellFormedPathNormalizer<P>::assignNormalized(P& target, const char* text, std::size_t length)
{
    // As a plain string: the target's own assignment would come back here.
    static_cast<std::string&>(target).assign(text, length);
    normalize(target);
}

template <class P>
void zvWellFormedPathNormalizer<P>::normalize(P& target)
{
    zorvel::detail::normalizeText(target);
}

// ---------------------------------------------------------------------------
// zvPathString_
// ---------------------------------------------------------------------------

/// Takes the active normaliser away from a path string while a call works on
/// it, and puts it back however the call ends.
template <class S>
class zvPathString_<S>::Detached
{
public:
    explicit Detached(zvPathString_& owner) : m_owner(owner) { m_normalizer.swap(owner.m_active); }
    ~Detached() { m_owner.m_active.swap(m_normalizer); }

    Detached(const Detached&) = delete;
    Detached& operator=(const Detached&) = delete;

    normalizer_type* normalizer() const { return m_normalizer.get(); }

private:
    zvPathString_& m_owner;
    normalizer_ptr m_normalizer;
};

template <class S>
zvPathString_<S>::zvPathString_()
{
    setNormalizer(normalizer_ptr());
    this->clear();
}

template <class S>
zvPathString_<S>::zvPathString_(const char* text) : zvPathString_()
{
    assign(text);
}

template <class S>
zvPathString_<S>::zvPathString_(const std::string& text) : zvPathString_()
{
    assign(text.data(), text.size());
}

template <class S>
zvPathString_<S>::zvPathString_(const zvPathString_& other) : S(other), m_active(other.m_active)
{
}

template <class S>
zvPathString_<S>::zvPathString_(const zvPathString_& directory, const char* name) : zvPathString_()
{
    if (name == nullptr || *name == '\0')
        static_cast<std::string&>(*this).assign(directory.data(), directory.size());
    else
        join({component(directory.data(), directory.size()), component(name)});
}

template <class S>
zvPathString_<S>& zvPathString_<S>::operator=(const zvPathString_& other)
{
    S::operator=(other);
    m_active = other.m_active;
    return *this;
}

/// One for all, because it has no state. Nobody owns it, so that nothing is
/// counted, and it is never destroyed: static objects may hold paths.
template <class S>
typename zvPathString_<S>::normalizer_ptr zvPathString_<S>::standardNormalizer()
{
    static normalizer_type& standard = *new zvWellFormedPathNormalizer<zvPathString_<S>>;
    return normalizer_ptr(normalizer_ptr(), &standard);
}

template <class S>
void zvPathString_<S>::setNormalizer(const normalizer_ptr& normalizer)
{
    if (normalizer) {
        m_active = normalizer;
        return;
    }
    if (!m_default)
        m_default = standardNormalizer();
    m_active = m_default;
}

template <class S>
zvPathString_<S>& zvPathString_<S>::assign(const char* text, std::size_t length)
{
    const component source(text, length);
    const Detached detached(*this);
    if (detached.normalizer())
        detached.normalizer()->assignNormalized(*this, source.text, source.length);
    else
        static_cast<std::string&>(*this).assign(source.text, source.length);
    return *this;
}

template <class S>
std::size_t zvPathString_<S>::find(const char* text, std::size_t from) const
{
    return text == nullptr ? S::npos : find(S(text), from);
}

template <class S>
std::size_t zvPathString_<S>::find(const S& text, std::size_t from) const
{
    return zorvel::detail::findText(this->data(), this->size(), text.data(), text.size(), from);
}

template <class S>
zvPathString_<S>& zvPathString_<S>::join(std::initializer_list<component> components)
{
    std::size_t room = this->size();
    for (const component& piece : components)
        room += piece.length + 1;
    std::string joined;
    joined.reserve(room);
    joined.append(this->data(), this->size());
    for (const component& piece : components)
        appendComponent(joined, piece);

    const Detached detached(*this);
    static_cast<std::string&>(*this).swap(joined);
    if (detached.normalizer())
        detached.normalizer()->normalize(*this);
    return *this;
}

template <class S>
void zvPathString_<S>::appendComponent(std::string& joined, const component& piece) const
{
    zorvel::detail::appendPiece(joined, {piece.text, piece.length});
}

template <class S>
zvPathString_<S> zvPathString_<S>::directoryPart() const
{
    zvPathString_ part(*this);
    part.resize(zorvel::detail::directoryLength(part));
    return part;
}
