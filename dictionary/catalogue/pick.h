// For what defines a function at the first row that names it. PICK(DEFINE, function) is DEFINE, and DEFINE_NOTHING for
// SHARED(function) and OWN(function): these make two arguments of one, which shifts DEFINE_NOTHING to the third place.
#pragma once

#define DEFINE_NOTHING(...)
#define THIRD(first, second, third, ...) third
#define PICK(define, ...) THIRD(__VA_ARGS__, DEFINE_NOTHING, define, unused)
