// The catalog site's style sheet and script, built into boardtool from the
// files in site/ so that an installed boardtool needs nothing beside it.
#ifndef BOARDLIB_TOOLS_SITEASSETS_H
#define BOARDLIB_TOOLS_SITEASSETS_H

namespace boardtool {
extern const char kSiteCss[];
extern const char kSiteJs[];
} // namespace boardtool

#endif
