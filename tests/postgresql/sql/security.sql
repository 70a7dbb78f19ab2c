-- An ordinary user opens no other file and reads no other section.
CREATE ROLE plain LOGIN;
GRANT ALL ON SCHEMA public TO plain;

-- Before the module is loaded in a session its settings are not known, but do not count either.
\c - plain
SET latigo.config_files = '/etc/passwd';
\set VERBOSITY terse
SELECT x FROM latigo_forward('Utm31', 0, 3);
SET latigo.config_files = '/etc/passwd';
ALTER ROLE plain SET latigo.config_files = '/etc/passwd';
SELECT set_config('latigo.config_files', '/etc/passwd', false);
ALTER SYSTEM SET latigo.config_files = '/etc/passwd';
CREATE FUNCTION files() RETURNS text LANGUAGE sql SET latigo.config_files = '/etc/passwd' RETURN current_setting('latigo.config_files');
SELECT current_setting('latigo.config_files') LIKE '%/first.ini, %/second.ini' AS as_configured;

-- A name is a name, whatever it looks like.
SELECT x FROM latigo_forward('/etc/passwd', 0, 3);
SELECT x FROM latigo_forward('../secret', 0, 3);

-- The name of a grid file is one in the library's folder: no slash leads out of it.
DO $$
BEGIN
  PERFORM latigo_to_wgs84('Escape', 45, 3);
EXCEPTION WHEN config_file_error THEN
  RAISE NOTICE 'Escape is refused';
END $$;
DO $$
BEGIN
  PERFORM latigo_to_wgs84('Absolute', 45, 3);
EXCEPTION WHEN config_file_error THEN
  RAISE NOTICE 'Absolute is refused';
END $$;

-- Neither can a superuser's session, but for the server's own configuration.
\c - admin
SELECT x FROM latigo_forward('Utm31', 0, 3);
SET latigo.config_files = '/etc/passwd';
ALTER ROLE plain SET latigo.config_files = '/etc/passwd';
ALTER SYSTEM SET latigo.config_files = 'first.ini';
