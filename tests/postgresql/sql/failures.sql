-- Points that cannot be converted, and sections that cannot be used.
\pset null NULL
\set VERBOSITY terse

-- The error of a query, without the folders of its file names.
CREATE FUNCTION failure(query text) RETURNS text LANGUAGE plpgsql AS $$
DECLARE message text; detail text; state text; value text;
BEGIN
  EXECUTE query INTO value;
  RETURN coalesce(value, 'NULL');
EXCEPTION WHEN OTHERS THEN
  GET STACKED DIAGNOSTICS state = RETURNED_SQLSTATE, message = MESSAGE_TEXT, detail = PG_EXCEPTION_DETAIL;
  RETURN concat_ws(' | ', state, regexp_replace(message, '/[^ ]*/', '', 'g'),
                   nullif(regexp_replace(detail, '/[^ ]*/', '', 'g'), ''));
END $$;

CREATE TABLE failing (id serial, query text);
INSERT INTO failing (query) VALUES
  ('SELECT latigo_forward(''Utm31'', 90, 3)'),
  ('SELECT latigo_forward(''Utm31'', 90.0001, 3, 7)'),
  ('SELECT latigo_forward(''Utm31'', 45, -360.5)'),
  ('SELECT latigo_forward(''Utm31'', ''NaN'', 3)'),
  ('SELECT latigo_forward(''Utm31'', 45, ''-Infinity'')'),
  ('SELECT latigo_forward(''Utm31'', 45, 3, ''NaN''::float8)'),
  ('SELECT latigo_inverse(''Utm31'', ''Infinity'', 0)'),
  ('SELECT latigo_inverse(''Utm31'', 5e9, 0)'),
  ('SELECT latigo_inverse(''Cone'', 1e9, 1e9)'),
  ('SELECT latigo_to_wgs84(''Shifted'', 39.9, 3)'),
  ('SELECT latigo_from_wgs84(''Shifted'', 50.1, 3, 7)'),
  ('SELECT latigo_forward(''Shifted'', 45, 8.1, true)'),
  ('SELECT latigo_inverse(''Shifted'', 500000, 0, true)'),
  ('SELECT latigo_scale(''Shifted'', 45, 8.1, true)'),
  ('SELECT latigo_to_wgs84(''Cut'', 49, 3)'),
  ('SELECT latigo_forward(''Heights'', 39, 3, 7)'),
  ('SELECT latigo_forward(''CutGeoid'', 49, 3, 7)'),
  ('SELECT latigo_distance(''Utm31'', 91, 0, 0, 0)'),
  ('SELECT latigo_distance(''Utm31'', 0, 0, ''NaN'', 0, true)');
SELECT id, failure(query) FROM failing ORDER BY id;
SET latigo.on_error = 'null';
SELECT count(*) AS points, count(*) FILTER (WHERE failure(query) = 'NULL') AS nulls FROM failing;

-- A section that cannot be used is an error in either case: a misspelt name is no column of NULL.
SELECT failure('SELECT latigo_forward(''' || section || ''', 45, 3)')
  FROM (VALUES ('Utm13'), (''), ('Utm31]'), ('NoGrid'), ('NoGeoid'), ('Escape'), ('Unknown')) AS named (section);

-- What the session may set.
SET latigo.on_error = 'perhaps';
SET latigo.unknown = 1;
RESET latigo.on_error;

-- Doubtful: one warning for a call, or a failure.
SELECT count(x) FROM (SELECT (latigo_forward('Utm31', 45, 80 + n)).x FROM generate_series(1, 3) n) AS each \gset
\echo :count
SET latigo.strict = on;
SELECT failure('SELECT latigo_forward(''Utm31'', 45, 85)');
SELECT failure('SELECT latigo_distance(''Utm31'', 45, 3, 48, 3)');
SELECT failure('SELECT latigo_azimuth(''Utm31'', 45, 3, 45.000000001, 4, true)');
RESET latigo.strict;
SELECT round(latigo_distance('Utm31', 45, 3, 46, 3)) AS doubtful, round(latigo_distance('Utm31', 45, 3, 45.5, 3)) AS good;

-- A section that is probably not read as intended: a warning when a session first uses it, or a failure each time. The scale
-- factor 0,9996 is read as none, so y is the length of the meridian to 45 degrees.
SELECT round((latigo_forward('Comma', 45, 3)).y) AS warned;
SELECT round((latigo_forward('Comma', 45, 3)).y) AS known;
SET latigo.strict = on;
SELECT failure('SELECT (latigo_forward(''Comma'', 45, 3)).y') FROM generate_series(1, 2);
RESET latigo.strict;
DO $$
DECLARE y float8;
BEGIN
  FOR n IN 1..2 LOOP
    PERFORM set_config('latigo.strict', (n = 2)::text, true);
    y := (latigo_forward('Comma', 45, 3)).y;
    RAISE NOTICE 'converted in round %', n;
  END LOOP;
END $$;

-- An error in the middle of a statement, of a function and of a subtransaction leaves the next call as it was.
SELECT (latigo_forward('Utm31', 89 + n, 3)).x FROM generate_series(0, 2) n;
DO $$
DECLARE failed int := 0;
BEGIN
  FOR n IN 1..2000 LOOP
    BEGIN
      PERFORM latigo_forward('Shifted', 45, 20 + n / 100.0, true);
    EXCEPTION WHEN numeric_value_out_of_range THEN
      failed := failed + 1;
    END;
  END LOOP;
  RAISE NOTICE '% of 2000 failed', failed;
END $$;
SELECT x FROM latigo_forward('Utm31', 0, 3);
