#include "xlsx/xlsxvocabulary.h"

namespace quorvale::xlsx {

const Vocabulary Vocabulary::Transitional{
    false, "http://schemas.openxmlformats.org/spreadsheetml/2006/main",
    "http://schemas.openxmlformats.org/officeDocument/2006/relationships"};
const Vocabulary Vocabulary::Strict{true, "http://purl.oclc.org/ooxml/spreadsheetml/main",
                                    "http://purl.oclc.org/ooxml/officeDocument/relationships"};

const Vocabulary *Vocabulary::ofMainNamespace(QByteArrayView uri)
{
    for (const Vocabulary *v : {&Transitional, &Strict})
        if (uri == v->main)
            return v;
    return nullptr;
}

const Vocabulary *Vocabulary::ofRelationshipsNamespace(QByteArrayView uri)
{
    for (const Vocabulary *v : {&Transitional, &Strict})
        if (uri == v->relationships)
            return v;
    return nullptr;
}

} // namespace quorvale::xlsx
