#include "References.h"

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

/// Follows children and uses, each once, and does not call itself: nobody has limited the depth yet.
void References::measure()
{
    struct Step
    {
        int element;
        QVector<int> parts;
        int next;
    };
    const auto open = [this](int element) {
        m_contents[element].state = Content::Open;
        return Step{element, drawnBy(element), 0};
    };

    QVector<Step> steps{open(0)};
    while (!steps.isEmpty()) {
        Step& step = steps.last();
        if (step.next == step.parts.size()) {
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
        const int part = step.parts[step.next++];
        if (m_contents[part].state == Content::Open)
            return fail(step.element,
                        QStringLiteral("<use> refers to what it stands in"),
                        QStringLiteral("break the circle"));
        if (m_contents[part].state == Content::Unknown)
            steps.append(open(part));
    }
}

QVector<int> References::drawnBy(int element) const
{
    const XmlElement& now = m_elements[element];
    QVector<int> parts;
    for (int child = element + 1; child < now.end; child = m_elements[child].end)
        parts.append(child);
    const int target = localName(now.name) == QLatin1String("use") ? targetOf(now) : -1;
    if (target >= 0)
        parts.append(target);
    return parts;
}

References::Content References::sumOf(const QVector<int>& parts) const
{
    qint64 elements = 1;
    int depth = 0;
    for (const int part : parts) {
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
