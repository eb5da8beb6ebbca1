# SPDX-License-Identifier: Apache-2.0
# What the reference's reader of headers does not know: tags after a sentence begin a line of their own there, and
# enumerations without a name have no type.
:again
s@^( *)/// (.*[^ /]) - (Returns|Nil|Raises|Owner|Thread|Cost|Shape|[a-z][A-Za-z, ]*): @\1/// \2\
\1/// - \3: @
t again
s@^( *enum) : [A-Za-z:_0-9]+ \{@\1 {@
# It takes the name of this namespace for a word of another language.
s@^(inline )?constexpr properties::@\1constexpr @
