-- Keys are drawn from here instead of from a database's own counters, which differ between databases.
CREATE TABLE key_sequence (
    name TEXT PRIMARY KEY,
    last INTEGER NOT NULL
);

CREATE TABLE code_table (
    table_no INTEGER PRIMARY KEY,
    name TEXT NOT NULL,
    source TEXT NOT NULL
);

CREATE TABLE code_value (
    table_no INTEGER NOT NULL REFERENCES code_table (table_no),
    value_no INTEGER NOT NULL,
    id TEXT NOT NULL,
    display_text TEXT NOT NULL,
    active INTEGER NOT NULL DEFAULT 1,
    sort_order INTEGER NOT NULL,
    PRIMARY KEY (table_no, value_no)
);

CREATE TABLE employee (
    officer_no INTEGER PRIMARY KEY,
    officer_id TEXT NOT NULL UNIQUE,
    name TEXT NOT NULL,
    badge_no TEXT,
    active INTEGER NOT NULL DEFAULT 1,
    k9_handler INTEGER NOT NULL DEFAULT 0,
    hired TEXT,
    left_on TEXT
);

CREATE TABLE user_account (
    user_id TEXT PRIMARY KEY,
    first_name TEXT NOT NULL,
    last_name TEXT NOT NULL,
    officer_id TEXT REFERENCES employee (officer_id),
    badge_no TEXT,
    active INTEGER NOT NULL DEFAULT 1
);

CREATE TABLE offense_code (
    offense_no INTEGER PRIMARY KEY,
    offense_id TEXT NOT NULL UNIQUE,
    description TEXT NOT NULL,
    rpt_code TEXT NOT NULL,
    active INTEGER NOT NULL DEFAULT 1
);

CREATE TABLE setting (
    section TEXT NOT NULL,
    key TEXT NOT NULL,
    value TEXT NOT NULL,
    PRIMARY KEY (section, key)
);

CREATE TABLE user_right (
    user_id TEXT NOT NULL REFERENCES user_account (user_id),
    module TEXT NOT NULL,
    right_no INTEGER NOT NULL,
    PRIMARY KEY (user_id, module, right_no)
);

CREATE TABLE required_field (
    module TEXT NOT NULL,
    table_name TEXT NOT NULL,
    field TEXT NOT NULL,
    extra TEXT NOT NULL DEFAULT '',
    PRIMARY KEY (module, table_name, field, extra)
);
