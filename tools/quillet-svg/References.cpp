#include "References.h"

#include "Names.h"

#include <algorithm>

namespace {

constexpr qint64 most_elements = 1000000; ///< with those that "use" repeats

QString tooDeepMessage()
{
    return QStringLiteral("elements are nested more than 2000 deep");
}

QString flatten()
{
    return QStringLiteral("take out groups that hold nothing but a group");
}

} // namespace

References::References(const QVector<XmlElement>& elements)
    : m_elements(elements), m_contents(elements.size())
{
    for (int i = 0; i < elements.size(); ++i) {
        const QString id = elements[i].attribute(QStringLiteral("id"));
        if (!id.isEmpty() && !m_ids.contains(id))
            m_ids.insert(id, i);
    }
    const int tooDeep = firstTooDeep(elements);
    if (tooDeep >= 0)
        fail(tooDeep, tooDeepMessage(), flatten());
    else
        measure();
}

int References::targetOf(const XmlElement& use) const
{
    const XmlAttribute* link = use.find(QStringLiteral("href"));
    for (const XmlAttribute& each : use.attributes) {
        if (!link && localName(each.name) == QLatin1String("href"))
            link = &each;
    }
    const QString value = link ? link->value.trimmed() : QString();
    return value.startsWith(QLatin1Char('#')) ? find(value.mid(1)) : -1;
}

bool References::isGradient(const QString& id) const
{
    const int element = find(id);
    return element >= 0 && m_elements[element].name.endsWith(QLatin1String("Gradient"));
}

/// Follows what is drawn, each once, and does not call itself: nobody has limited the depth yet.
void References::measure()
{
    struct Step
    {
        int element;
        Parts parts;
        int next;
    };
    const auto open = [this](int element) {
        m_contents[element].state = Content::Open;
        return Step{element, drawnBy(element), 0};
    };

    QVector<Step> steps{open(0)};
    while (!steps.isEmpty()) {
        Step& step = steps.last();
        if (step.next == step.parts.drawn.size()) {
            const Content content = sumOf(step.parts);
            if (content.elements > most_elements)
                return fail(step.element,
                            QStringLiteral("<use> repeats more than 1,000,000 elements"),
                            QStringLiteral("repeat less"));
            if (content.depth > deepest_nesting)
                return fail(step.element, tooDeepMessage(), flatten());
            m_contents[step.element] = content;
            steps.removeLast();
            continue;
        }
        const int part = step.parts.drawn[step.next++];
        if (m_contents[part].state == Content::Open)
            return fail(step.element,
                        QStringLiteral("<use> refers to what it stands in"),
                        QStringLiteral("break the circle"));
        if (m_contents[part].state == Content::Unknown)
            steps.append(open(part));
    }
}

/// What of the document is drawn for the element, whatever its conditions and properties are.
References::Parts References::drawnBy(int element) const
{
    const XmlElement& now = m_elements[element];
    const QString name = localName(now.name);
    Parts parts;
    if (name == QLatin1String("use")) {
        const int target = targetOf(now);
        if (target >= 0)
            parts.drawn.append(target);
    } else if (isContainer(name) || name == QLatin1String("symbol")) { // which only "use" leads to
        for (int child = element + 1; child < now.end; child = m_elements[child].end) {
            const QString childName = localName(m_elements[child].name);
            if (isContainer(childName) || isShape(childName))
                parts.drawn.append(child);
            else
                ++parts.others;
        }
    }
    return parts;
}

References::Content References::sumOf(const Parts& parts) const
{
    qint64 elements = 1 + parts.others;
    int depth = 0;
    for (const int part : parts.drawn) {
        elements += m_contents[part].elements;
        depth = std::max(depth, m_contents[part].depth);
    }
    return {Content::Known, int(std::min(elements, most_elements + 1)), depth + 1};
}

void References::fail(int element, const QString& why, const QString& advice)
{
    m_error = why;
    m_advice = advice;
    m_errorPosition = m_elements[element].position;
}
