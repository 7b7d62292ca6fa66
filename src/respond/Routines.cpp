#include "respond/Routines.h"

#include "host/RoutineBinding.h"
#include "respond/TextInsert.h"
#include "respond/basAttachments.h"
#include "respond/modTemplateLog.h"

namespace lorvane::respond {

namespace {

using host::routine;

constexpr host::Routine rows[] = {
    routine<&Insert>(u"TextInsert", u"Insert", u"body, marker, text"),
    routine<&removeSpecialString>(u"TextInsert", u"removeSpecialString", u"count"),
    routine<&InsertMail_TaskAppnt>(u"TextInsert", u"InsertMail_TaskAppnt", u"targetItem, templateItem"),
    routine<&PlainTextInWord>(u"TextInsert", u"PlainTextInWord", u"item"),
    routine<&CopyAttachments>(u"basAttachments", u"CopyAttachments", u"templateItem, target, html"),
    routine<&IsAttachedFromTemplate>(u"basAttachments", u"IsAttachedFromTemplate", u"name, contentID"),
    routine<&RemoveAttachmentsFromTemp>(u"basAttachments", u"RemoveAttachmentsFromTemp", u"folder"),
    routine<&GetUniqueAttachmentName>(u"basAttachments", u"GetUniqueAttachmentName", u"name, contentID, templateSafe, target, html"),
    routine<&GetTempFolder>(u"basAttachments", u"GetTempFolder", u""),
    routine<&CreateStorageFolders>(u"basAttachments", u"CreateStorageFolders", u""),
    routine<&VerifyWindowsPathLlimit>(u"basAttachments", u"VerifyWindowsPathLlimit", u"path"),
    routine<&GetAttachmentName>(u"basAttachments", u"GetAttachmentName", u"path"),
    routine<&MakeDuplicateFileName>(u"basAttachments", u"MakeDuplicateFileName", u"path, number"),
    routine<&ReverseString>(u"basAttachments", u"ReverseString", u"text"),
    routine<&RemoveSpecialCharFromFilename>(u"basAttachments", u"RemoveSpecialCharFromFilename", u"name"),
    routine<&TemplateLogRecord>(u"modTemplateLog", u"TemplateLogRecord", u"entryID, storeID"),
    routine<&blnLogTemplate>(u"modTemplateLog", u"blnLogTemplate", u""),
    routine<&GetPath>(u"modTemplateLog", u"GetPath", u""),
    routine<&blnFolderExist>(u"modTemplateLog", u"blnFolderExist", u"path"),
    routine<&blnFileExist>(u"modTemplateLog", u"blnFileExist", u"path"),
    routine<&WriteToFile>(u"modTemplateLog", u"WriteToFile", u"path, line"),
    routine<&CreateLogFile>(u"modTemplateLog", u"CreateLogFile", u"path, probe"),
    routine<&LogFileName>(u"modTemplateLog", u"LogFileName", u"path"),
    routine<&DefaultLogFile>(u"modTemplateLog", u"DefaultLogFile", u""),
};

}  // namespace

host::RoutineTable routines() {
    return rows;
}

}  // namespace lorvane::respond
