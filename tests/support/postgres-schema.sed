# sql/schema.sql in PostgreSQL's nearest types: `sed -E -f postgres-schema.sed sql/schema.sql`.
# Names stay unquoted, so PostgreSQL folds them to lower case and finds them
# again for the same unquoted names in any statement.
s/\bnvarchar\(/varchar(/g
s/\bsmalldatetime\b/timestamp(0)/g
s/\bdatetime\b/timestamp(3)/g
s/\bmoney\b/numeric(19, 4)/g
s/\bbit (NOT NULL|NULL) DEFAULT 0\b/boolean \1 DEFAULT false/g
s/\bbit\b/boolean/g
s/^[[:space:]]*GO[[:space:]]*$/;/
