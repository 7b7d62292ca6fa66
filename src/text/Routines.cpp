#include "text/Routines.h"

#include "host/RoutineBinding.h"
#include "text/BodyFormat.h"
#include "text/GrammarCheck.h"
#include "text/RecipientNames.h"
#include "text/TemplateTags.h"
#include "text/html_clip.h"

namespace lorvane::text {

namespace {

using host::routine;

constexpr host::Routine rows[] = {
    routine<&ReplaceTemplateTag>(u"basGlobals", u"ReplaceTemplateTag", u"text, item, [source], [noRecipient], [otherItem]"),
    routine<&ReplaceTag>(u"basGlobals", u"ReplaceTag", u"text, tag, value"),
    routine<&RemoveGrammarCheck>(u"basGlobals", u"RemoveGrammarCheck", u"text, startDelimiter, endDelimiter"),
    routine<&GetFullName>(u"basGlobals", u"GetFullName", u"addressEntry, displayName, fullName, firstName"),
    routine<&RemoveDisplayCompany>(u"basGlobals", u"RemoveDisplayCompany", u"name"),
    routine<&StripDisplayEmail>(u"basGlobals", u"StripDisplayEmail", u"name"),
    routine<&GetFirstName>(u"basGlobals", u"GetFirstName", u"name"),
    routine<&GetLastName>(u"basGlobals", u"GetLastName", u"name"),
    routine<&SenderEmail>(u"basGlobals", u"SenderEmail", u"item"),
    routine<&IsReceivedMail>(u"basGlobals", u"IsReceivedMail", u"item"),
    routine<&IsSentMail>(u"basGlobals", u"IsSentMail", u"item"),
    routine<&EmailAlreadyRecipt>(u"basGlobals", u"EmailAlreadyRecipt", u"item, address"),
    routine<&ConvertPlainTextToHtml>(u"basGlobals", u"ConvertPlainTextToHtml", u"text"),
    routine<&GetHtmlFromBody>(u"basGlobals", u"GetHtmlFromBody", u"text"),
    routine<&SetParagraphSpacing>(u"basGlobals", u"SetParagraphSpacing", u"html"),
    routine<&RemoveSpecChars>(u"basGlobals", u"RemoveSpecChars", u"name"),
    routine<&CopyHTMLToClipBoard>(u"html_clip", u"CopyHTMLToClipBoard", u"html, item, [source], [hasRecipients], [otherItem]"),
    routine<&PutHTMLClipboard>(u"html_clip", u"PutHTMLClipboard", u"fragment, before, after"),
    routine<&MergeHTMLIntoBody>(u"html_clip", u"MergeHTMLIntoBody", u"templateHtml, bodyHtml, item, hasRecipients, otherItem"),
};

}  // namespace

host::RoutineTable routines() {
    return rows;
}

}  // namespace lorvane::text
