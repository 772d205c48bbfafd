ALTER TABLE incident ADD COLUMN AgencyNo INTEGER;
ALTER TABLE IncdOffense ADD COLUMN NibrsCode TEXT;

-- Who a suspect is to another party of the incident: SeqNo is the suspect's, the next column the party's.
CREATE TABLE IncdSuspVictim (
    IncidentNo INTEGER NOT NULL REFERENCES incident (IncidentNo),
    LinkNo INTEGER NOT NULL,
    SeqNo INTEGER,
    VictimSeqNo INTEGER,
    RelationNo INTEGER,
    PRIMARY KEY (IncidentNo, LinkNo)
);

CREATE TABLE IncdSuspWitness (
    IncidentNo INTEGER NOT NULL REFERENCES incident (IncidentNo),
    LinkNo INTEGER NOT NULL,
    SeqNo INTEGER,
    WitnessSeqNo INTEGER,
    RelationNo INTEGER,
    PRIMARY KEY (IncidentNo, LinkNo)
);

CREATE TABLE IncdSuspOther (
    IncidentNo INTEGER NOT NULL REFERENCES incident (IncidentNo),
    LinkNo INTEGER NOT NULL,
    SeqNo INTEGER,
    OtherSeqNo INTEGER,
    RelationNo INTEGER,
    PRIMARY KEY (IncidentNo, LinkNo)
);

-- The codes of an offense, one a row.
CREATE TABLE IncdOffWeapon (
    IncidentNo INTEGER NOT NULL REFERENCES incident (IncidentNo),
    RowNo INTEGER NOT NULL,
    OffenseSeqNo INTEGER,
    WeaponNo INTEGER,
    PRIMARY KEY (IncidentNo, RowNo)
);

CREATE TABLE IncdOffBias (
    IncidentNo INTEGER NOT NULL REFERENCES incident (IncidentNo),
    RowNo INTEGER NOT NULL,
    OffenseSeqNo INTEGER,
    BiasNo INTEGER,
    PRIMARY KEY (IncidentNo, RowNo)
);
