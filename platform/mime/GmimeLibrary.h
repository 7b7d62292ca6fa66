#pragma once

namespace lorvane::mime {

/// Makes the mail library ready, once; what uses it calls this first.
void useGmime();

}  // namespace lorvane::mime
