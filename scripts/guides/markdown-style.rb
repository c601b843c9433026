# The rules that the Markdown linter (mdl) checks the guides by.
all
# The editor wraps lines; rows of tables and addresses cannot be.
exclude_rule 'MD013'
# "Added" and "Changed" stand below each version of the changelog.
rule 'MD024', :allow_different_nesting => true
rule 'MD029', :style => :ordered
# Fenced or indented, but one of them in a page.
rule 'MD046', :style => :consistent
# It takes an escaped | for the end of a cell; check-links.py counts the cells.
exclude_rule 'MD056'
